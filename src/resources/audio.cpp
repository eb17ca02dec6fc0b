#include "resources/audio.h"

#include <SDL.h>
#include <SDL_mixer.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "resources/assets.h"

namespace audio {

namespace {

constexpr int kFrequency = 44100;
constexpr int kStereo = 2;
constexpr int kChunkFrames = 1024;
constexpr int kChannels = 24;  // effects that can play at the same time

constexpr std::array kAllSfx = {Sfx::Click, Sfx::Place, Sfx::Tile,  Sfx::NoNo,    Sfx::Remove,
                                Sfx::Error, Sfx::Hint,  Sfx::Ready, Sfx::Success, Sfx::WinGlare,
                                Sfx::Star1, Sfx::Star2, Sfx::Star3};

constexpr std::array kSfxFiles = {"audio/sfx_click.ogg",     "audio/sfx_place.ogg",  "audio/sfx_tile.ogg",
                                  "audio/sfx_nono.ogg",      "audio/sfx_remove.ogg", "audio/sfx_error.ogg",
                                  "audio/sfx_hint.ogg",      "audio/sfx_ready.ogg",  "audio/sfx_success.ogg",
                                  "audio/sfx_win_glare.ogg", "audio/sfx_star1.ogg",  "audio/sfx_star2.ogg",
                                  "audio/sfx_star3.ogg"};
static_assert(kSfxFiles.size() == kAllSfx.size());

constexpr const char* kMusicFile = "audio/bgm_calm.ogg";

// Factors. A brightness of 1 leaves the sound unchanged; a lower one removes more of the high frequencies.
struct Variant {
  double pitch;
  double level;
  double brightness;
};

// Tiles land by the dozen, and the same sound twenty times a second would rattle. No variant is louder than
// the file. tools/measure_sounds.py reads this table.
constexpr std::array kTileVariants = {Variant{0.972, 0.95, 0.3}, Variant{1.018, 0.88, 0.5},
                                      Variant{0.988, 0.84, 0.16}, Variant{1.029, 0.93, 0.22},
                                      Variant{1.008, 0.8, 0.4}};

struct FreeMusic {
  void operator()(Mix_Music* music) const { Mix_FreeMusic(music); }
};
struct FreeChunk {
  void operator()(Mix_Chunk* chunk) const { Mix_FreeChunk(chunk); }
};
using Music = std::unique_ptr<Mix_Music, FreeMusic>;
using Chunk = std::unique_ptr<Mix_Chunk, FreeChunk>;

using Samples = std::vector<std::int16_t>;

struct Sound {
  // The samples that the chunk plays, unless it owns its samples. Nothing else reads them.
  Samples samples;  // cppcheck-suppress unusedStructMember
  Chunk chunk;
};

struct Effect {
  std::vector<Sound> sounds;
  std::size_t next = 0;
  std::minstd_rand random;
};

struct State {
  bool ready = false;
  bool enabled = true;
  double musicVolume = 0.25;
  double sfxVolume = 1.0;
  bool musicWanted = false;
  Music music;
  std::map<Sfx, Effect> effects;
};

// Never destroyed: shutdown may be called at exit, and until then the mixer's thread plays these sounds.
State& state() {
  static auto& instance = *new State;
  return instance;
}

std::string fileFor(Sfx effect) {
  const auto index = static_cast<std::size_t>(effect);
  return index < kSfxFiles.size() ? kSfxFiles[index] : "";
}

// nan becomes 0.
double clampedVolume(double volume) { return volume > 0 ? std::min(volume, 1.0) : 0; }

int mixerVolume(double volume) { return static_cast<int>(volume * MIX_MAX_VOLUME); }

// A stream that reads from `bytes`, which must outlive it. The caller passes it to SDL_mixer, which frees it.
SDL_RWops* streamOf(const std::string& bytes) {
  return SDL_RWFromConstMem(bytes.data(), static_cast<int>(bytes.size()));
}

bool openDevice() {
  if (SDL_InitSubSystem(SDL_INIT_AUDIO) != 0) {
    std::fprintf(stderr, "[audio] no audio subsystem: %s\n", SDL_GetError());
    return false;
  }
  if (Mix_OpenAudio(kFrequency, AUDIO_S16SYS, kStereo, kChunkFrames) != 0) {
    std::fprintf(stderr, "[audio] Mix_OpenAudio: %s\n", SDL_GetError());
    return false;
  }
  // If it allocates fewer, fewer effects play at the same time.
  Mix_AllocateChannels(kChannels);
  return true;
}

// The chunk's samples at another pitch, by playing them faster or slower. Empty on failure.
Samples resampled(const Mix_Chunk& chunk, double pitch, int frequency, int channels) {
  const auto count = static_cast<Uint8>(channels);
  const auto playedAt = static_cast<int>(std::lround(frequency * pitch));
  SDL_AudioCVT conversion;
  if (SDL_BuildAudioCVT(&conversion, AUDIO_S16SYS, count, playedAt, AUDIO_S16SYS, count, frequency) < 0)
    return {};
  Samples samples(chunk.alen / sizeof(std::int16_t) * static_cast<std::size_t>(conversion.len_mult));
  conversion.buf = reinterpret_cast<Uint8*>(samples.data());
  conversion.len = static_cast<int>(chunk.alen);
  std::copy_n(chunk.abuf, chunk.alen, conversion.buf);
  if (SDL_ConvertAudio(&conversion) != 0) return {};
  samples.resize(static_cast<std::size_t>(conversion.len_cvt) / sizeof(std::int16_t));
  return samples;
}

// Scales the samples by the variant's level and runs each channel through a first-order low-pass filter.
void soften(Samples& samples, const Variant& variant, int channels) {
  std::vector<double> last(static_cast<std::size_t>(channels));
  for (std::size_t i = 0; i < samples.size(); ++i) {
    double& smooth = last[i % last.size()];
    smooth += variant.brightness * (variant.level * samples[i] - smooth);
    samples[i] = static_cast<std::int16_t>(std::lround(smooth));
  }
}

// Skips variants that cannot be made.
void addVariants(std::vector<Sound>& sounds) {
  int frequency = 0;
  int channels = 0;
  Uint16 format = 0;
  if (Mix_QuerySpec(&frequency, &format, &channels) == 0 || format != AUDIO_S16SYS) return;
  const Mix_Chunk& original = *sounds.front().chunk;
  for (const Variant& variant : kTileVariants) {
    Samples samples = resampled(original, variant.pitch, frequency, channels);
    soften(samples, variant, channels);
    auto* bytes = reinterpret_cast<Uint8*>(samples.data());
    Chunk chunk(Mix_QuickLoad_RAW(bytes, static_cast<Uint32>(samples.size() * sizeof(std::int16_t))));
    if (chunk && !samples.empty()) sounds.push_back({std::move(samples), std::move(chunk)});
  }
}

// The effect's next sound. Never the same twice in a row if the effect has several.
Mix_Chunk* nextSound(Effect& effect) {
  Mix_Chunk* chunk = effect.sounds[effect.next].chunk.get();
  const std::size_t others = effect.sounds.size() - 1;
  if (others > 0) effect.next = (effect.next + 1 + effect.random() % others) % effect.sounds.size();
  return chunk;
}

void loadEffects() {
  for (const Sfx effect : kAllSfx) {
    const std::string file = fileFor(effect);
    const std::string& bytes = assets::blob(file);
    if (bytes.empty()) continue;
    Chunk chunk(Mix_LoadWAV_RW(streamOf(bytes), 1));
    if (!chunk) {
      std::fprintf(stderr, "[audio] sfx failed: %s (%s)\n", file.c_str(), SDL_GetError());
      continue;
    }
    std::vector<Sound>& sounds = state().effects[effect].sounds;
    sounds.push_back({{}, std::move(chunk)});
    if (effect == Sfx::Tile) addVariants(sounds);
  }
}

void loadMusic() {
  const std::string file = kMusicFile;
  const std::string& bytes = assets::blob(file);
  if (!bytes.empty()) state().music.reset(Mix_LoadMUS_RW(streamOf(bytes), 1));
  if (!state().music) std::fprintf(stderr, "[audio] bgm failed (%s)\n", SDL_GetError());
}

}  // namespace

bool init() {
  if (state().ready) return true;
  if (!openDevice()) return false;
  loadEffects();
  loadMusic();
  state().ready = true;
  setMusicVolume(state().musicVolume);
  return true;
}

void shutdown() {
  State& s = state();
  if (!s.ready) return;
  // Set first: a termination signal may call shutdown again while it runs.
  s.ready = false;
  s.musicWanted = false;
  Mix_HaltMusic();
  Mix_HaltChannel(-1);
  s.music.reset();
  s.effects.clear();
  Mix_CloseAudio();
  SDL_QuitSubSystem(SDL_INIT_AUDIO);
}

void play(Sfx effect) {
  State& s = state();
  if (!s.ready || !s.enabled || s.sfxVolume <= 0) return;
  const auto found = s.effects.find(effect);
  if (found == s.effects.end()) return;
  Mix_Chunk* chunk = nextSound(found->second);
  Mix_VolumeChunk(chunk, mixerVolume(s.sfxVolume));
  // Fails without a free channel. One effect less among 24 is not missed.
  Mix_PlayChannel(-1, chunk, 0);
}

void startMusic() {
  State& s = state();
  s.musicWanted = true;
  if (!s.ready || !s.enabled || !s.music || Mix_PlayingMusic() != 0) return;
  // If it fails, there is no music.
  Mix_PlayMusic(s.music.get(), -1);
}

void setMusicVolume(double volume) {
  State& s = state();
  s.musicVolume = clampedVolume(volume);
  if (s.ready) Mix_VolumeMusic(mixerVolume(s.musicVolume));
}

void setSfxVolume(double volume) { state().sfxVolume = clampedVolume(volume); }

void setEnabled(bool on) {
  State& s = state();
  s.enabled = on;
  if (on) {
    if (s.musicWanted) startMusic();
    return;
  }
  s.musicWanted = false;
  if (s.ready) Mix_HaltMusic();
}

}  // namespace audio
