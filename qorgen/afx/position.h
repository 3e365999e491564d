#pragma once

// What the collections share: the position type and the making of nodes.

#include <new>
#include <utility>

#include "qorgen/afx/exception.h"

// Names an element of a list or map; null is none.
struct QorPosition;
using POSITION = QorPosition*;

namespace qorgen::afx {

// A new node owned by its collection; exhausted memory is reported as everywhere in the foundation classes.
template <typename Node, typename... Args>
Node* NewNode(Args&&... args) {
  void* room = ::operator new(sizeof(Node), std::nothrow);
  if (room == nullptr) AfxThrowMemoryException();
  try {
    return ::new (room) Node{std::forward<Args>(args)...};
  } catch (...) {
    ::operator delete(room);
    throw;
  }
}

}  // namespace qorgen::afx
