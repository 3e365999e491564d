#pragma once

// Exceptions of the foundation classes in assertions: thrown by pointer, ended with Delete.

#include <gtest/gtest.h>

#include "qorgen/afx/exception.h"

namespace qorgen::tests {

// The cause of the CFileException that `action` throws, none if it throws nothing; the object is ended.
template <class Action>
int CauseOf(Action action) {
  try {
    action();
  } catch (CFileException* thrown) {
    const int cause = thrown->m_cause;
    thrown->Delete();
    return cause;
  }
  return CFileException::none;
}

}  // namespace qorgen::tests

// EXPECT_THROWS_POINTER(array[3], CInvalidArgException): the statement throws a pointer to that class or to
// one derived from it, and the object is ended.
#define EXPECT_THROWS_POINTER(statement, exception_class)                    \
  do {                                                                       \
    bool caught_it = false;                                                  \
    try {                                                                    \
      static_cast<void>(statement);                                          \
    } catch (exception_class * thrown) {                                     \
      caught_it = true;                                                      \
      thrown->Delete();                                                      \
    }                                                                        \
    EXPECT_TRUE(caught_it) << #statement " throws no " #exception_class "*"; \
  } while (false)
