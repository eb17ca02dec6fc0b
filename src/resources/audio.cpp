#include "resources/audio.h"

#include <SDL.h>
#include <SDL_mixer.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdio>
#include <map>
#include <memory>
#include <string>
#include <utility>

#include "resources/assets.h"

namespace audio {

namespace {

constexpr int kFrequency = 44100;
constexpr int kStereo = 2;
constexpr int kChunkFrames = 1024;
constexpr int kChannels = 24;  // effects that can be heard at the same time

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

struct FreeMusic {
  void operator()(Mix_Music* music) const { Mix_FreeMusic(music); }
};
struct FreeChunk {
  void operator()(Mix_Chunk* chunk) const { Mix_FreeChunk(chunk); }
};
using Music = std::unique_ptr<Mix_Music, FreeMusic>;
using Chunk = std::unique_ptr<Mix_Chunk, FreeChunk>;

struct State {
  bool ready = false;
  bool enabled = true;
  double musicVolume = 0.25;
  double sfxVolume = 1.0;
  bool musicWanted = false;
  Music music;
  std::map<Sfx, Chunk> chunks;
};

// Never destroyed: shutdown may be called while the process ends, and until then the mixer's thread plays
// from these sounds.
State& state() {
  static auto& instance = *new State;
  return instance;
}

std::string fileFor(Sfx effect) {
  const auto index = static_cast<std::size_t>(effect);
  return index < kSfxFiles.size() ? kSfxFiles[index] : "";
}

// A nan is silence.
double clampedVolume(double volume) { return volume > 0 ? std::min(volume, 1.0) : 0; }

int mixerVolume(double volume) { return static_cast<int>(volume * MIX_MAX_VOLUME); }

// Whoever is given the stream frees it, and reads from `bytes` as long as it has it.
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
  // Should it give fewer, fewer effects are heard at the same time, and that is all.
  Mix_AllocateChannels(kChannels);
  return true;
}

void loadEffects() {
  for (const Sfx effect : kAllSfx) {
    const std::string file = fileFor(effect);
    const std::string& bytes = assets::blob(file);
    if (bytes.empty()) continue;
    Chunk chunk(Mix_LoadWAV_RW(streamOf(bytes), 1));
    if (chunk) {
      state().chunks[effect] = std::move(chunk);
    } else {
      std::fprintf(stderr, "[audio] sfx failed: %s (%s)\n", file.c_str(), SDL_GetError());
    }
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
  // First of all: a signal that ends the program may call this again from within.
  s.ready = false;
  s.musicWanted = false;
  Mix_HaltMusic();
  Mix_HaltChannel(-1);
  s.music.reset();
  s.chunks.clear();
  Mix_CloseAudio();
  SDL_QuitSubSystem(SDL_INIT_AUDIO);
}

void play(Sfx effect) {
  const State& s = state();
  if (!s.ready || !s.enabled || s.sfxVolume <= 0) return;
  const auto found = s.chunks.find(effect);
  if (found == s.chunks.end()) return;
  Mix_Chunk* chunk = found->second.get();
  Mix_VolumeChunk(chunk, mixerVolume(s.sfxVolume));
  // Without a free channel it fails: one effect less among so many is not missed.
  Mix_PlayChannel(-1, chunk, 0);
}

void startMusic() {
  State& s = state();
  s.musicWanted = true;
  if (!s.ready || !s.enabled || !s.music || Mix_PlayingMusic() != 0) return;
  // Music that cannot be started is one more kind of silence.
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
