#include "qorgen/afx/string_resource.h"

#include <algorithm>
#include <array>
#include <mutex>
#include <shared_mutex>
#include <span>
#include <vector>

#include "qorgen/afx/internal/message_text.h"

namespace {

using namespace qorgen::afx;

// "%1" is the file's name or the error's code. Ascending by id.
constexpr std::array kOwnTexts = {
    QorStringResource{kTextNoErrorAvailable, L"エラーメッセージはありません。",
                      L"No error message is available."},
    QorStringResource{kTextNotSupported, L"サポートされていない操作を実行しようとしました。",
                      L"An unsupported operation was attempted."},
    QorStringResource{kTextOutOfMemory, L"メモリが不足しています。", L"Out of memory."},
    QorStringResource{kTextInvalidArgument, L"引数が正しくありません。", L"An argument is not valid."},
    QorStringResource{kTextUnnamedFile, L"（名前のないファイル）", L"an unnamed file"},
    QorStringResource{kTextUnknownCode, L"原因不明のエラー（0x%1）が発生しました。",
                      L"An unknown error (0x%1) occurred."},
    QorStringResource{kTextFileCause + 0, L"%1 でエラーは発生していません。", L"No error occurred in %1."},
    QorStringResource{kTextFileCause + 1, L"%1 の操作中に原因不明のエラーが発生しました。",
                      L"An unknown error occurred while accessing %1."},
    QorStringResource{kTextFileCause + 2, L"%1 が見つかりません。", L"%1 was not found."},
    QorStringResource{kTextFileCause + 3, L"%1 のパスが正しくありません。",
                      L"%1 contains a path that is not valid."},
    QorStringResource{kTextFileCause + 4, L"開いているファイルが多すぎるため、%1 を開けませんでした。",
                      L"%1 could not be opened because there are too many open files."},
    QorStringResource{kTextFileCause + 5, L"%1 へのアクセスが拒否されました。", L"Access to %1 was denied."},
    QorStringResource{kTextFileCause + 6, L"%1 のファイル ハンドルが正しくありません。",
                      L"The file handle of %1 is not valid."},
    QorStringResource{kTextFileCause + 7, L"%1 は現在のフォルダーなので削除できません。",
                      L"%1 could not be removed because it is the current folder."},
    QorStringResource{kTextFileCause + 8, L"フォルダーがいっぱいのため、%1 を作成できませんでした。",
                      L"%1 could not be created because the folder is full."},
    QorStringResource{kTextFileCause + 9, L"%1 の読み書き位置を移動できませんでした。",
                      L"The position in %1 could not be moved."},
    QorStringResource{kTextFileCause + 10, L"%1 の操作中にハードウェアの入出力エラーが発生しました。",
                      L"A hardware I/O error occurred while accessing %1."},
    QorStringResource{kTextFileCause + 11, L"%1 はほかで使用中のため、共有違反が発生しました。",
                      L"A sharing violation occurred while accessing %1."},
    QorStringResource{kTextFileCause + 12, L"%1 はロックされているため、ロック違反が発生しました。",
                      L"A locking violation occurred while accessing %1."},
    QorStringResource{kTextFileCause + 13, L"%1 への書き込み中にディスクがいっぱいになりました。",
                      L"The disk became full while writing to %1."},
    QorStringResource{kTextFileCause + 14, L"%1 の終わりを越えて読み込もうとしました。",
                      L"An attempt was made to read past the end of %1."},
};

constexpr bool IsAscending() {
  for (std::size_t i = 1; i < kOwnTexts.size(); ++i) {
    if (kOwnTexts[i - 1].id >= kOwnTexts[i].id) return false;
  }
  return true;
}
static_assert(IsAscending());
static_assert(kOwnTexts.back().id == kTextFileCause + kFileCauses - 1);

struct HostTables {
  std::shared_mutex mutex;
  std::vector<std::span<const QorStringResource>> tables;
};

// Never destroyed: exceptions may ask for their text while the process ends.
HostTables& Host() {
  static HostTables& tables = *new HostTables;
  return tables;
}

const wchar_t* Choose(const QorStringResource& resource) noexcept {
  const wchar_t* wanted = IsUserJapanese() ? resource.japanese : resource.english;
  if (wanted != nullptr) return wanted;
  return resource.japanese != nullptr ? resource.japanese : resource.english;
}

const QorStringResource* FindIn(std::span<const QorStringResource> table, unsigned int id) noexcept {
  const auto found = std::find_if(table.begin(), table.end(),
                                  [id](const QorStringResource& resource) { return resource.id == id; });
  return found != table.end() ? &*found : nullptr;
}

}  // namespace

void QorAddStringResources(const QorStringResource* table, std::size_t count) {
  if (table == nullptr || count == 0) return;
  HostTables& host = Host();
  const std::unique_lock lock(host.mutex);
  host.tables.emplace_back(table, count);
}

void QorRemoveStringResources(const QorStringResource* table) noexcept {
  HostTables& host = Host();
  const std::unique_lock lock(host.mutex);
  std::erase_if(host.tables, [table](const auto& added) { return added.data() == table; });
}

const wchar_t* QorFindStringResource(unsigned int id) noexcept {
  HostTables& host = Host();
  const std::shared_lock lock(host.mutex);
  for (auto table = host.tables.rbegin(); table != host.tables.rend(); ++table) {
    if (const QorStringResource* resource = FindIn(*table, id)) return Choose(*resource);
  }
  const QorStringResource* resource = FindIn(kOwnTexts, id);
  return resource != nullptr ? Choose(*resource) : nullptr;
}
