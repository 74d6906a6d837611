// Which specification file an analysis reads.
#pragma once

#include "spec/read_specification.h"
#include "support/host.h"

namespace tessaly {

/// Settles the specification file and, with `askForExtraSpecs` and somebody there to be asked, the extra specifications
/// of `commandLine`.
/// A name that ends in a separator is a folder to change to, "*" means to ask. Throws `Halt{NoFileName}` when there is
/// no name and nobody gives one.
void SettleSpecificationFile(CommandLine& commandLine, bool askForExtraSpecs, Host& host);

}  // namespace tessaly
