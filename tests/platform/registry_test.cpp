#include "qorgen/platform/registry.h"

#include <gtest/gtest.h>

namespace {

TEST(RegistryTest, predefined_keys_are_numbers_widened_with_their_sign) {
  EXPECT_EQ(static_cast<std::int32_t>(0x80000001), reinterpret_cast<std::intptr_t>(HKEY_CURRENT_USER));
  EXPECT_EQ(static_cast<std::int32_t>(0x80000002), reinterpret_cast<std::intptr_t>(HKEY_LOCAL_MACHINE));
}

}  // namespace
