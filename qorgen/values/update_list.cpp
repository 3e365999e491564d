#include "qorgen/values/update_list.h"

#include <memory>

namespace {

constexpr CQorUpdateItem kNoItem;

}  // namespace

CQorUpdateList::CQorUpdateList() : m_items(10) {}

CQorUpdateList::~CQorUpdateList() {
  Initialize();
}

void CQorUpdateList::Add(const CQorUpdateItem& item) {
  auto copy = std::make_unique<CQorUpdateItem>(item);
  m_items.AddTail(copy.get());
  copy.release();
}

const CQorUpdateItem& CQorUpdateList::Get(int index) const {
  const CQorUpdateItem* const item = FindIndex(index, nullptr);
  return item != nullptr ? *item : kNoItem;
}

int CQorUpdateList::GetCount() const {
  return static_cast<int>(m_items.GetCount());
}

CQorUpdateItem* CQorUpdateList::FindIndex(int index, POSITION* pos) const {
  const POSITION position = m_items.FindIndex(index);
  if (pos != nullptr) *pos = position;
  return position != nullptr ? m_items.GetAt(position) : nullptr;
}

void CQorUpdateList::All(int on) {
  m_all = on;
}

int CQorUpdateList::IsAll() const {
  return m_all;
}

void CQorUpdateList::Initialize() {
  m_all = 0;
  while (!m_items.IsEmpty()) delete m_items.RemoveHead();
}
