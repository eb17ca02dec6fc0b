// palette.h: the colours that widgets and screens share, 0xRRGGBB. Other colours stand beside the picture
// that uses them.
#pragma once

#include <cstdint>

namespace ui::palette {

inline constexpr std::uint32_t kPanel = 0x16523C;
inline constexpr std::uint32_t kPanelEdge = 0x235F47;
inline constexpr std::uint32_t kDarkPlaque = 0x0C3524;

inline constexpr std::uint32_t kGold = 0xE8B84B;
inline constexpr std::uint32_t kDarkGold = 0x9C6F18;  // edges of golden controls
inline constexpr std::uint32_t kStarGold = 0xF0C14A;

inline constexpr std::uint32_t kLightText = 0xF6EFDD;
inline constexpr std::uint32_t kMutedText = 0xA6C2B1;
inline constexpr std::uint32_t kCream = 0xF1D489;      // labels of dark plaques
inline constexpr std::uint32_t kDarkBrown = 0x2A1E06;  // labels of golden plaques
inline constexpr std::uint32_t kChipText = 0x1A1A1A;   // labels of golden chips

inline constexpr std::uint32_t kDanger = 0xA64242;
inline constexpr std::uint32_t kDangerText = 0xE58787;
inline constexpr std::uint32_t kConfirm = 0x7A1F1A;
inline constexpr std::uint32_t kConfirmEdge = 0xB3382C;
inline constexpr std::uint32_t kConfirmText = 0xFFD9D2;

inline constexpr std::uint32_t kWinLight = 0xFFF4D6;  // fills the screen between a won game and its result
inline constexpr std::uint32_t kVeil = 0x041C0B;      // darkens the screen under dialogs and texts
inline constexpr std::uint32_t kWhite = 0xFFFFFF;
inline constexpr std::uint32_t kBlack = 0x000000;

}  // namespace ui::palette
