// The era questions of the date object, over the constant table of eras. Stateless but for the object's own
// fields.

#include "qorgen/calendar/era_date.h"
#include "qorgen/calendar/internal/era_table.h"

using qorgen::calendar::FindEra;
using qorgen::calendar::kEraCount;
using qorgen::calendar::kEraList;

namespace {

constexpr bool IsEra(int index) {
  return index >= 0 && index < kEraCount;
}

}  // namespace

int CQorDate::GetGengo() const {
  return FindEra((m_nStyle & DATESTYLE_EMPTY) != 0 ? m_dateLast : m_date);
}

int CQorDate::GetWareki(int* pnGengo) const {
  const int era = FindEra(m_date);
  if (pnGengo != nullptr) *pnGengo = IsEra(era) ? era : qorgen::calendar::kNoEra;
  return IsEra(era) ? m_date.year - kEraList[era].year + 1 : 0;
}

short CQorDate::GetSeirekiFromWareki(short nYear, int nGengo) {
  return IsEra(nGengo) ? static_cast<short>(kEraList[nGengo].year - 1 + nYear) : short{0};
}

const wchar_t* CQorDate::GetGengoJPNString(int nGengo) {
  return IsEra(nGengo) ? kEraList[nGengo].name : nullptr;
}

const wchar_t* CQorDate::GetGengoRomaString(int nGengo) {
  return IsEra(nGengo) ? kEraList[nGengo].letter : nullptr;
}
