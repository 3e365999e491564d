#include "qorgen/platform/common/time_locale.h"

#include <algorithm>
#include <clocale>

#include "qorgen/platform/crt.h"

namespace qorgen::platform {

bool IsTimeJapanese() {
  const wchar_t* const name = _wsetlocale(LC_TIME, nullptr);
  return name != nullptr && _wcsnicmp(name, L"ja", 2) == 0;
}

TimeZone LocalZone(bool summer) {
  TIME_ZONE_INFORMATION system{};
  GetTimeZoneInformation(&system);
  TimeZone zone{};
  zone.minutes = static_cast<int>(-(system.Bias + (summer ? system.DaylightBias : system.StandardBias)));
  std::copy(std::begin(system.StandardName), std::end(system.StandardName) - 1, zone.name);
  if (summer) std::copy(std::begin(system.DaylightName), std::end(system.DaylightName) - 1, zone.name);
  return zone;
}

}  // namespace qorgen::platform
