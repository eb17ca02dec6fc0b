// Measures the committed sound files after decoding, independently of the scripts that made them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <vorbis/vorbisfile.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <filesystem>
#include <memory>
#include <numbers>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

constexpr std::array<std::string_view, 13> kEffects{"click", "place", "tile",  "nono",    "remove",
                                                    "error", "hint",  "ready", "success", "win_glare",
                                                    "star1", "star2", "star3"};
constexpr int kRate = 44'100;
constexpr double kSilence = -120.0;
constexpr double kMinusOneDecibel = 0.8913;
constexpr double kMinusThreeDecibels = 0.7079;
constexpr double kFingerprintFloor = -40.0;

using Samples = std::vector<double>;

struct Sound {
  std::string name;
  int rate = 0;
  std::vector<Samples> channels;

  std::size_t frames() const { return channels.at(0).size(); }
  double seconds() const { return static_cast<double>(frames()) / rate; }
};

std::size_t frames(double seconds) { return static_cast<std::size_t>(std::lround(seconds * kRate)); }

struct CloseVorbis {
  void operator()(OggVorbis_File* file) const { ov_clear(file); }
};

std::string pathOf(std::string_view name) {
  return std::string(VESKARA_ASSETS) + "/audio/" + std::string(name) + ".ogg";
}

Sound decoded(std::string_view name) {
  const std::string path = pathOf(name);
  OggVorbis_File file;
  if (ov_fopen(path.c_str(), &file) != 0) throw std::runtime_error("cannot decode " + path);
  const std::unique_ptr<OggVorbis_File, CloseVorbis> closing(&file);
  const vorbis_info* info = ov_info(&file, -1);
  Sound sound{std::string(name), static_cast<int>(info->rate),
              std::vector<Samples>(static_cast<std::size_t>(info->channels))};
  float** block = nullptr;
  int section = 0;
  long got = 0;
  while ((got = ov_read_float(&file, &block, 4096, &section)) > 0) {
    for (std::size_t c = 0; c < sound.channels.size(); ++c) {
      sound.channels[c].insert(sound.channels[c].end(), block[c], block[c] + got);
    }
  }
  if (got < 0) throw std::runtime_error("broken data in " + path);
  return sound;
}

double peak(const Sound& sound) {
  double highest = 0.0;
  for (const Samples& channel : sound.channels) {
    for (double x : channel) highest = std::max(highest, std::abs(x));
  }
  return highest;
}

double decibels(double power) {
  return power > 0.0 ? std::max(kSilence, 10.0 * std::log10(power)) : kSilence;
}

double power(std::span<const double> part) {
  double sum = 0.0;
  for (double x : part) sum += x * x;
  return sum / static_cast<double>(part.size());
}

// A second-order filter with the coefficients b / a, where a0 is 1.
struct Biquad {
  double b0, b1, b2, a1, a2;

  Samples operator()(const Samples& in) const {
    Samples out(in.size());
    double x1 = 0.0, x2 = 0.0, y1 = 0.0, y2 = 0.0;
    for (std::size_t i = 0; i < in.size(); ++i) {
      out[i] = b0 * in[i] + b1 * x1 + b2 * x2 - a1 * y1 - a2 * y2;
      x2 = std::exchange(x1, in[i]);
      y2 = std::exchange(y1, out[i]);
    }
    return out;
  }
};

// K-weighting of ITU-R BS.1770 at 44.1 kHz: the ear hears middle frequencies better than bass.
constexpr Biquad kShelf{1.5308412300503478, -2.6509799951547297, 1.1690790799215869, -1.6636551132560204,
                        0.7125954280732254};
constexpr Biquad kHighpass{1.0, -2.0, 1.0, -1.9891696736297957, 0.9891990357870394};

// K-weighted power, summed over the channels, in windows of `width` seconds every `step` seconds. Past the
// end there is silence.
std::vector<double> loudnessPowers(const Sound& sound, double width, double step) {
  Samples sums(sound.frames() + frames(width) + 1, 0.0);
  for (const Samples& channel : sound.channels) {
    const Samples weighted = kHighpass(kShelf(channel));
    for (std::size_t i = 0; i < weighted.size(); ++i) sums[i + 1] += weighted[i] * weighted[i];
  }
  for (std::size_t i = 1; i < sums.size(); ++i) sums[i] += sums[i - 1];
  std::vector<double> powers;
  for (std::size_t i = 0; i < sound.frames(); i += frames(step)) {
    powers.push_back((sums[i + frames(width)] - sums[i]) / static_cast<double>(frames(width)));
  }
  return powers;
}

double lufs(double power) { return decibels(power) - 0.691; }

// The loudness of the loudest 400 ms, which is about the time over which an ear integrates sound.
double loudestMoment(const Sound& sound) { return lufs(std::ranges::max(loudnessPowers(sound, 0.4, 0.001))); }

double meanAbove(const std::vector<double>& powers, double floor) {
  double sum = 0.0;
  int count = 0;
  for (double p : powers) {
    if (p <= floor) continue;
    sum += p;
    ++count;
  }
  return count > 0 ? sum / count : 0.0;
}

// Integrated loudness of BS.1770: ignores silence and what is 10 LU below the rest.
double integratedLoudness(const Sound& sound) {
  const std::vector<double> powers = loudnessPowers(sound, 0.4, 0.1);
  const double silent = std::pow(10.0, (-70.0 + 0.691) / 10.0);
  return lufs(meanAbove(powers, std::max(silent, 0.1 * meanAbove(powers, silent))));
}

// Loudness range of EBU Tech 3342: between the 10th and 95th percentile of 3 s windows, without silent ones
// and those 20 LU below the rest.
double loudnessRange(const Sound& sound) {
  std::vector<double> powers = loudnessPowers(sound, 3.0, 0.1);
  powers.resize(powers.size() - 30);
  const double silent = std::pow(10.0, (-70.0 + 0.691) / 10.0);
  const double floor = std::max(silent, 0.01 * meanAbove(powers, silent));
  std::erase_if(powers, [floor](double power) { return power <= floor; });
  std::ranges::sort(powers);
  const auto percentile = [&](std::size_t percent) { return lufs(powers[powers.size() * percent / 100]); };
  return percentile(95) - percentile(10);
}

// The true peak of the wave, which may lie between the samples. A windowed sinc evaluates quarter steps
// around the samples near the peak.
double truePeak(const Sound& sound) {
  constexpr std::size_t kReach = 16;
  double highest = peak(sound);
  const double near = 0.8 * highest;
  for (const Samples& channel : sound.channels) {
    for (std::size_t i = kReach; i + kReach < channel.size(); ++i) {
      if (std::abs(channel[i]) < near) continue;
      for (const double offset : {-0.5, -0.25, 0.25, 0.5}) {
        double value = 0.0;
        for (std::size_t k = i - kReach; k <= i + kReach; ++k) {
          const double x = std::numbers::pi * (static_cast<double>(i) + offset - static_cast<double>(k));
          value += channel[k] * std::sin(x) / x * (0.5 + 0.5 * std::cos(x / (kReach + 1)));
        }
        highest = std::max(highest, std::abs(value));
      }
    }
  }
  return highest;
}

// Second-order Butterworth filters.
Biquad lowpass(double hertz) {
  const double k = std::tan(std::numbers::pi * hertz / kRate);
  const double a0 = 1.0 + std::numbers::sqrt2 * k + k * k;
  return {k * k / a0, 2.0 * k * k / a0, k * k / a0, 2.0 * (k * k - 1.0) / a0,
          (1.0 - std::numbers::sqrt2 * k + k * k) / a0};
}

Biquad highpass(double hertz) {
  const Biquad low = lowpass(hertz);
  const double k = std::tan(std::numbers::pi * hertz / kRate);
  const double b0 = low.b0 / (k * k);
  return {b0, -2.0 * b0, b0, low.a1, low.a2};
}

Sound filtered(Sound sound, const Biquad& filter) {
  for (Samples& channel : sound.channels) channel = filter(filter(channel));
  return sound;
}

// The share of energy from 2 to 5 kHz, where the ear is most sensitive.
double piercingShare(const Sound& sound) {
  const Sound piercing = filtered(filtered(sound, highpass(2000)), lowpass(5000));
  double whole = 0.0;
  double part = 0.0;
  for (std::size_t c = 0; c < sound.channels.size(); ++c) {
    whole += power(sound.channels[c]);
    part += power(piercing.channels[c]);
  }
  return part / whole;
}

// A band-pass filter one third of an octave wide.
Biquad thirdOctave(double hertz) {
  const double w = 2.0 * std::numbers::pi * hertz / kRate;
  const double alpha = std::sin(w) / (2.0 * 4.318);
  const double a0 = 1.0 + alpha;
  return {alpha / a0, 0.0, -alpha / a0, -2.0 * std::cos(w) / a0, (1.0 - alpha) / a0};
}

// Third-octave band centres from 100 Hz to 8 kHz.
std::vector<double> thirdOctaveFrequencies() {
  std::vector<double> frequencies;
  for (int third = 0; third < 20; ++third) frequencies.push_back(100.0 * std::exp2(third / 3.0));
  return frequencies;
}

Samples mono(const Sound& sound) {
  const double share = 1.0 / static_cast<double>(sound.channels.size());
  Samples mixed(sound.frames(), 0.0);
  for (const Samples& channel : sound.channels) {
    for (std::size_t i = 0; i < mixed.size(); ++i) mixed[i] += share * channel[i];
  }
  return mixed;
}

// What an ear recognises a sound by: the level of each third-octave band in each of six parts of its first
// 0.6 s, in dB relative to the loudest of them, and at least -40.
std::vector<double> fingerprint(const Sound& sound) {
  constexpr std::size_t kParts = 6;
  Samples samples = mono(sound);
  samples.resize(frames(0.6));
  std::vector<double> levels;
  for (double hertz : thirdOctaveFrequencies()) {
    const Samples band = thirdOctave(hertz)(samples);
    const std::size_t width = band.size() / kParts;
    for (std::size_t part = 0; part < kParts; ++part) {
      levels.push_back(decibels(power(std::span(band).subspan(part * width, width))));
    }
  }
  const double loudest = std::ranges::max(levels);
  for (double& level : levels) level = std::max(level - loudest, kFingerprintFloor);
  return levels;
}

// The mean difference of two fingerprints in dB, over the entries where at least one sound is audible.
double differenceByEar(const std::vector<double>& a, const std::vector<double>& b) {
  double sum = 0.0;
  int heard = 0;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (std::max(a[i], b[i]) <= kFingerprintFloor) continue;
    sum += std::abs(a[i] - b[i]);
    ++heard;
  }
  return sum / heard;
}

// The music across its loop point: the last second, then the first.
Samples acrossTheSeam(const Samples& channel) {
  Samples around(channel.end() - kRate, channel.end());
  around.insert(around.end(), channel.begin(), channel.begin() + kRate);
  return around;
}

double largestStep(std::span<const double> part) {
  double step = 0.0;
  for (std::size_t i = 1; i < part.size(); ++i) step = std::max(step, std::abs(part[i] - part[i - 1]));
  return step;
}

std::vector<Sound> effects() {
  std::vector<Sound> sounds;
  for (std::string_view name : kEffects) sounds.push_back(decoded("sfx_" + std::string(name)));
  return sounds;
}

TEST(EffectFiles, SuitTheMixer) {
  for (const Sound& sound : effects()) {
    EXPECT_EQ(sound.rate, kRate) << sound.name;
    EXPECT_THAT(sound.channels.size(), testing::AnyOf(1U, 2U)) << sound.name;
  }
}

TEST(EffectFiles, AreShort) {
  for (const Sound& sound : effects()) {
    EXPECT_GE(sound.seconds(), 0.05) << sound.name;
    EXPECT_LE(sound.seconds(), 1.5) << sound.name;
  }
}

TEST(EffectFiles, StayADecibelBelowFullScale) {
  for (const Sound& sound : effects()) EXPECT_LT(peak(sound), kMinusOneDecibel) << sound.name;
}

TEST(EffectFiles, BeginAndEndWithoutAClick) {
  for (const Sound& sound : effects()) {
    for (const Samples& channel : sound.channels) {
      EXPECT_LT(std::abs(channel.front()), 0.001) << sound.name;
      EXPECT_LT(std::abs(channel.back()), 0.001) << sound.name;
    }
  }
}

TEST(EffectFiles, AreHeardWithoutDelay) {
  for (const Sound& sound : effects()) {
    const Samples samples = mono(sound);
    const auto audible = [threshold = 0.05 * peak(sound)](double x) { return std::abs(x) > threshold; };
    const auto first = std::ranges::find_if(samples, audible) - samples.begin();
    EXPECT_LT(static_cast<std::size_t>(first), frames(0.02)) << sound.name;
  }
}

// A cut-off bell sounds as if a hand stopped it.
TEST(EffectFiles, DieAwayBeforeTheyEnd) {
  for (const Sound& sound : effects()) {
    const Samples samples = mono(sound);
    const auto tail = std::span(samples).last(samples.size() / 20);
    EXPECT_LT(decibels(power(tail)), decibels(peak(sound) * peak(sound)) - 40.0) << sound.name;
  }
}

// A landing tile is never heard alone; see below.
TEST(EffectFiles, LieWithin6DecibelsOfLoudness) {
  std::vector<double> loudness;
  for (const Sound& sound : effects()) {
    if (sound.name != "sfx_tile") loudness.push_back(loudestMoment(sound));
  }
  EXPECT_LE(std::ranges::max(loudness) - std::ranges::min(loudness), 6.0);
}

// The player hears it with every pair.
TEST(EffectFiles, RemoveDoesNotPierce) { EXPECT_LE(piercingShare(decoded("sfx_remove")), 0.12); }

// Small loudspeakers have no bass, so refusals need higher frequencies too.
TEST(EffectFiles, RefusalsAreHeardFromASmallLoudspeaker) {
  for (const char* name : {"sfx_error", "sfx_nono"}) {
    const Sound sound = decoded(name);
    EXPECT_GE(loudestMoment(filtered(sound, highpass(300))), loudestMoment(sound) - 6.0) << name;
  }
}

// The overlapping tile sounds of a new deal. The game varies them, but none is louder than the file.
Sound twentyTilesInASecond(const Sound& tile) {
  Sound row{"row", kRate, std::vector<Samples>(tile.channels.size(), Samples(frames(1.0) + tile.frames()))};
  for (std::size_t c = 0; c < tile.channels.size(); ++c) {
    for (int number = 0; number < 20; ++number) {
      const std::size_t start = frames(0.05 * number);
      for (std::size_t i = 0; i < tile.frames(); ++i) row.channels[c][start + i] += tile.channels[c][i];
    }
  }
  return row;
}

TEST(EffectFiles, TilesOfADealStaySofterThanWhateverIsHeardOnce) {
  const double row = loudestMoment(twentyTilesInASecond(decoded("sfx_tile")));
  for (const Sound& sound : effects()) {
    if (sound.name == "sfx_tile") continue;
    EXPECT_LT(row, loudestMoment(sound)) << sound.name;
  }
}

// At the default volumes; the music's is a quarter.
TEST(EffectFiles, TilesOfADealDoNotDrownTheMusic) {
  const double music = integratedLoudness(decoded("bgm_calm")) + decibels(0.25 * 0.25);
  EXPECT_LT(loudestMoment(twentyTilesInASecond(decoded("sfx_tile"))), music + 3.0);
}

// For comparison: the same sound played more softly has a difference of 0 dB.
TEST(EffectFiles, AreToldApartByEar) {
  std::vector<std::vector<double>> prints;
  for (const Sound& sound : effects()) prints.push_back(fingerprint(sound));
  for (std::size_t a = 0; a < prints.size(); ++a) {
    for (std::size_t b = 0; b < a; ++b) {
      EXPECT_GT(differenceByEar(prints[a], prints[b]), 3.0) << kEffects[a] << " and " << kEffects[b];
    }
  }
}

class Music : public testing::Test {
 protected:
  Sound sound = decoded("bgm_calm");
};

TEST_F(Music, IsStereoAtTheRateOfTheMixer) {
  EXPECT_EQ(sound.rate, kRate);
  EXPECT_EQ(sound.channels.size(), 2U);
}

TEST_F(Music, LastsSixToEightMinutes) {
  EXPECT_GE(sound.seconds(), 360.0);
  EXPECT_LE(sound.seconds(), 480.0);
}

TEST_F(Music, TakesNoMoreThan5Megabytes) {
  EXPECT_LE(std::filesystem::file_size(pathOf("bgm_calm")), 5'000'000U);
}

TEST_F(Music, Stays3DecibelsBelowFullScaleBetweenTheSamplesToo) {
  EXPECT_LE(truePeak(sound), kMinusThreeDecibels);
}

TEST_F(Music, IsAsLoudAsIntended) { EXPECT_NEAR(integratedLoudness(sound), -17.0, 1.0); }

// The player hears it for an hour at one volume: it should vary, but not startle.
TEST_F(Music, HasARangeOf5To8LoudnessUnits) {
  EXPECT_GE(loudnessRange(sound), 5.0);
  EXPECT_LE(loudnessRange(sound), 8.0);
}

TEST_F(Music, IsNeverMoreThan5DecibelsAboveItsLoudness) {
  EXPECT_LE(lufs(std::ranges::max(loudnessPowers(sound, 0.4, 0.1))), integratedLoudness(sound) + 5.0);
}

TEST_F(Music, DoesNotPierce) { EXPECT_LE(piercingShare(sound), 0.12); }

TEST_F(Music, JumpsAtItsSeamNoFurtherThanItMovesAnyway) {
  for (const Samples& channel : sound.channels) {
    const Samples around = acrossTheSeam(channel);
    const auto before = std::span(around).subspan(kRate - frames(0.1), frames(0.1));
    const auto after = std::span(around).subspan(kRate, frames(0.1));
    const double jump = std::abs(around[kRate] - around[kRate - 1]);
    EXPECT_LE(jump, std::min(largestStep(before), largestStep(after)));
  }
}

TEST_F(Music, BeginsOutOfSilenceWithoutAClick) {
  for (const Samples& channel : sound.channels) EXPECT_LT(std::abs(channel.front()), 0.003);
}

TEST_F(Music, IsAsLoudAfterItsSeamAsBefore) {
  for (const Samples& channel : sound.channels) {
    const double before = decibels(power(std::span(channel).last(frames(0.05))));
    const double after = decibels(power(std::span(channel).first(frames(0.05))));
    EXPECT_NEAR(before, after, 2.0);
    EXPECT_GT(before, -60.0) << "the music stops before it begins again";
  }
}

// Ignores bands more than 30 dB below the loudest: they are masked, and mostly encoder noise.
TEST_F(Music, HasOneSpectrumOnBothSidesOfItsSeam) {
  const Samples around = acrossTheSeam(mono(sound));
  std::vector<double> before, after;
  for (double hertz : thirdOctaveFrequencies()) {
    const Samples band = thirdOctave(hertz)(around);
    before.push_back(decibels(power(std::span(band).subspan(kRate - frames(0.05), frames(0.05)))));
    after.push_back(decibels(power(std::span(band).subspan(kRate, frames(0.05)))));
  }
  const double loudest = std::ranges::max(before);
  for (std::size_t i = 0; i < before.size(); ++i) {
    if (before[i] < loudest - 30.0) continue;
    EXPECT_NEAR(before[i], after[i], 3.0) << "band " << i;
  }
}

// A click is short and contains high frequencies, of which this music has almost none.
TEST_F(Music, DoesNotClickAtItsSeam) {
  constexpr Biquad kAbove6kHz{0.54004996, -1.08009991, 0.54004996, -0.8559895, 0.30421033};
  for (const Samples& channel : sound.channels) {
    const Samples high = kAbove6kHz(kAbove6kHz(acrossTheSeam(channel)));
    const auto seam = std::span(high).subspan(kRate - frames(0.0025), frames(0.005));
    EXPECT_LT(decibels(power(seam)), -80.0);
  }
}

}  // namespace
