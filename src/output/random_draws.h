// Random numbers that are the same on every machine.
#pragma once

#include <array>
#include <bit>
#include <cstdint>

namespace tessaly {

/// The generator xoshiro256** (Blackman & Vigna 2021, ACM Transactions on Mathematical Software 47(4), 36). Libraries
/// fix the engines of the language, but not what they make of a distribution.
class RandomDraws {
 public:
  /// Spreads `seed` over the state by SplitMix64 (Steele, Lea & Flood 2014), so that neighbouring seeds have nothing in
  /// common.
  explicit RandomDraws(std::uint64_t seed) {
    for (std::uint64_t& word : state_) {
      seed += 0x9E3779B97F4A7C15U;
      std::uint64_t z = seed;
      z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9U;
      z = (z ^ (z >> 27)) * 0x94D049BB133111EBU;
      word = z ^ (z >> 31);
    }
  }
  /// `state` must not be all zeros.
  explicit RandomDraws(const std::array<std::uint64_t, 4>& state) : state_(state) {}

  /// 64 random bits.
  std::uint64_t Bits() {
    const std::uint64_t bits = std::rotl(state_[1] * 5, 7) * 9;
    const std::uint64_t shifted = state_[1] << 17;
    state_[2] ^= state_[0];
    state_[3] ^= state_[1];
    state_[1] ^= state_[2];
    state_[0] ^= state_[3];
    state_[2] ^= shifted;
    state_[3] = std::rotl(state_[3], 45);
    return bits;
  }

  /// Uniform from 0 up to, but not, 1.
  double Uniform() { return static_cast<double>(Bits() >> 11) * 0x1p-53; }

 private:
  std::array<std::uint64_t, 4> state_{};
};

}  // namespace tessaly
