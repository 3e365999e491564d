#pragma once

// What nearly every test includes: GoogleTest, tables of rows, texts, scratch folders, exceptions thrown by
// pointer, and what is known of Wine.

#include <climits>
#include <gtest/gtest.h>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "tests/support/rows.h"
#include "tests/support/scratch_folder.h"
#include "tests/support/text.h"
#include "tests/support/throws.h"
#include "tests/support/wine.h"
