#pragma once

// The rows of kana that take a voicing mark, and the folding of single kana. Pure functions, the same for a
// text in any width; what they don't name they give back as it is.

#include "qorgen/text/internal/width_table.h"

namespace qorgen::text {

enum class Voicing { kNone, kPlain, kVoiced, kSemiVoiced };

namespace rows {

// The rows stand at the same places of both scripts; here as places in the block of one.
inline constexpr Unit kHiragana = 0x3040;
inline constexpr Unit kKatakana = 0x30A0;
inline constexpr Unit kKa = 0x0B, kDi = 0x22;  // か to ぢ: plain and voiced in turn
inline constexpr Unit kTu = 0x24, kDo = 0x29;  // つ to ど: the same, behind the small っ
inline constexpr Unit kHa = 0x2F, kPo = 0x3D;  // は to ぽ: plain, voiced, semi-voiced in turn
static_assert(kHiragana + kKa == u'か' && kHiragana + kDi == u'ぢ' && kHiragana + kTu == u'つ' &&
              kHiragana + kDo == u'ど' && kHiragana + kHa == u'は' && kHiragana + kPo == u'ぽ');
static_assert(kKatakana + kKa == u'カ' && kKatakana + kPo == u'ポ');

}  // namespace rows

// What a kana of the rows is; kNone outside of them.
constexpr Voicing VoicingInRows(Unit c) {
  if (!IsBetween(c, kKanaFirst, kKanaLast)) return Voicing::kNone;
  const Unit place = c < rows::kKatakana ? c - rows::kHiragana : c - rows::kKatakana;
  if (IsBetween(place, rows::kKa, rows::kDi)) {
    return (place - rows::kKa) % 2 == 0 ? Voicing::kPlain : Voicing::kVoiced;
  }
  if (IsBetween(place, rows::kTu, rows::kDo)) {
    return (place - rows::kTu) % 2 == 0 ? Voicing::kPlain : Voicing::kVoiced;
  }
  if (IsBetween(place, rows::kHa, rows::kPo)) {
    const int step = (place - rows::kHa) % 3;
    return step == 0 ? Voicing::kPlain : step == 1 ? Voicing::kVoiced : Voicing::kSemiVoiced;
  }
  return Voicing::kNone;
}

inline constexpr Unit kU = u'ウ';
inline constexpr Unit kVu = u'ヴ';

// ウ takes a voiced mark outside the rows; う deliberately doesn't.
constexpr bool CanTakeVoicedMark(Unit c) {
  return c == kU || VoicingInRows(c) == Voicing::kPlain;
}

constexpr Unit ToVoicedKana(Unit c) {
  if (c == kU) return kVu;
  return VoicingInRows(c) == Voicing::kPlain ? static_cast<Unit>(c + 1) : c;
}

// Only the rows of は and ハ.
constexpr bool CanTakeSemiVoicedMark(Unit c) {
  return VoicingInRows(c) == Voicing::kPlain &&
         VoicingInRows(static_cast<Unit>(c + 2)) == Voicing::kSemiVoiced;
}

constexpr Unit ToSemiVoicedKana(Unit c) {
  return CanTakeSemiVoicedMark(c) ? static_cast<Unit>(c + 2) : c;
}

static_assert(ToVoicedKana(u'カ') == u'ガ' && ToVoicedKana(u'つ') == u'づ' && ToVoicedKana(u'ッ') == u'ッ');
static_assert(CanTakeVoicedMark(u'ウ') && !CanTakeVoicedMark(u'う') && !CanTakeVoicedMark(u'ガ'));
static_assert(ToSemiVoicedKana(u'ほ') == u'ぽ' && !CanTakeSemiVoicedMark(u'カ'));

// The mark that a full-width kana needs behind its half-width form, or 0. ゔ has none: its voice is lost
// there.
constexpr Unit HalfMarkOf(Unit c) {
  if (c == kVu) return kHalfVoicedMark;
  switch (VoicingInRows(c)) {
    case Voicing::kVoiced:
      return kHalfVoicedMark;
    case Voicing::kSemiVoiced:
      return kHalfSemiVoicedMark;
    default:
      return 0;
  }
}

// Hiragana to katakana: the whole block and not only its letters, so ゝ goes to ヽ, and a stray spacing mark
// becomes a dot or a long sound mark.
constexpr Unit ToKatakana(Unit c) {
  return IsBetween(c, 0x3040, 0x309F) ? static_cast<Unit>(c + 0x60) : c;
}
static_assert(ToKatakana(u'ゔ') == u'ヴ' && ToKatakana(0x309B) == u'・' && ToKatakana(0x309C) == u'ー');

// Voiced and semi-voiced to plain. ゔ stays.
constexpr Unit ToPlainKana(Unit c) {
  if (c == kVu) return kU;
  switch (VoicingInRows(c)) {
    case Voicing::kVoiced:
      return static_cast<Unit>(c - 1);
    case Voicing::kSemiVoiced:
      return static_cast<Unit>(c - 2);
    default:
      return c;
  }
}

// Latin letters to capitals, in their width.
constexpr Unit ToUpperLetter(Unit c) {
  return IsBetween(c, u'a', u'z') || IsBetween(c, u'ａ', u'ｚ') ? static_cast<Unit>(c - 0x20) : c;
}

// Small kana to large ones of the same script and width. ゎ, ヮ, ヵ, ヶ, ゕ and ゖ stay small.
constexpr Unit ToLargeKana(Unit c) {
  if (IsBetween(c, u'ｧ', u'ｫ')) return static_cast<Unit>(c + 10);
  if (IsBetween(c, u'ｬ', u'ｮ')) return static_cast<Unit>(c + 40);
  if (c == u'ｯ') return u'ﾂ';
  if (!IsBetween(c, kKanaFirst, kKanaLast)) return c;
  const Unit place = c < rows::kKatakana ? c - rows::kHiragana : c - rows::kKatakana;
  const bool small =
      place % 2 == 1 && (IsBetween(place, 0x01, 0x09) || IsBetween(place, 0x43, 0x47) || place == 0x23);
  return small ? static_cast<Unit>(c + 1) : c;
}
static_assert(ToLargeKana(u'ッ') == u'ツ' && ToLargeKana(u'ゃ') == u'や' && ToLargeKana(u'ｮ') == u'ﾖ');
static_assert(ToLargeKana(u'ゎ') == u'ゎ' && ToLargeKana(u'ヵ') == u'ヵ' && ToLargeKana(u'ア') == u'ア');

constexpr Unit ToUpperAll(Unit c) {
  return ToLargeKana(ToUpperLetter(c));
}

// The dashes and the space of a search key.
constexpr Unit FoldSearchSign(Unit c) {
  return c == 0x002D || c == 0x2212 ? Unit{0xFF0D} : c == 0x0020 ? Unit{0x3000} : c;
}

// In a sort key every dash is a long sound mark.
constexpr Unit FoldSortSign(Unit c) {
  switch (c) {
    case 0x002D:
    case 0x2010:
    case 0x2015:
    case 0x2212:
    case 0xFF0D:
    case 0xFF70:
    case 0x30FC:
      return 0x30FC;
    case 0x0020:
      return 0x3000;
    default:
      return c;
  }
}

}  // namespace qorgen::text
