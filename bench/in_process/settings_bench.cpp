// One setting stored and read: this library's value files, a table of SQLite with a transaction a value, an
// INI file through GLib that is saved at each set and loaded at each get. All see what another process has
// stored. SQLite and GLib wait for the disk when they store; sqlite_unsynced leaves that to the system, as
// value files do.

#include <benchmark/benchmark.h>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "qorgen/qorgen.h"

// Behind the library: both have an ABS, and GLib's is a macro.
#include <glib.h>
#ifdef QORGEN_BENCH_SQLITE
#include <sqlite3.h>
#endif

namespace {

constexpr int kValues = 100;  // in the tree, the table, the file

// A place of the run's own on a disk.
std::string Place(const char* name) {
  const char* work = std::getenv("QORGEN_BENCH_WORK");
  return std::string(work != nullptr ? work : "/tmp") + "/" + name;
}

std::string NarrowName(int i) {
  return "value" + std::to_string(i % kValues);
}

std::string NarrowText(int i) {
  return "既定のプリンター " + std::to_string(i);
}

// A key on a folder of its own, which goes with it.
class Key : public CQorRegFileKey {
 public:
  Key() : CQorRegFileKey(nullptr) {
    CString folder = L"C:" + CString(Place("settings").c_str());
    folder.Replace(L'/', L'\\');
    Construct(folder);
    CQorFileUtil::DeleteDirectory(folder);
  }
  ~Key() override { CQorFileUtil::DeleteDirectory(GetKeyName()); }
};

const std::vector<CString>& Names() {
  static const std::vector<CString> names = [] {
    std::vector<CString> list;
    for (int i = 0; i < kValues; ++i) list.push_back(NarrowName(i).c_str());
    return list;
  }();
  return names;
}

void Fill(Key& key) {
  for (const CString& name : Names()) key.SetString(name, L"既定のプリンター 0");
}

void QorgenSet(benchmark::State& state) {
  Key key;
  Fill(key);
  int i = 0;
  CString text;
  for (auto _ : state) {
    text.Format(L"既定のプリンター %d", i);
    if (!key.SetString(Names()[i++ % kValues], text)) state.SkipWithError("not stored");
  }
}

void QorgenGet(benchmark::State& state) {
  Key key;
  Fill(key);
  int i = 0;
  for (auto _ : state) {
    const wchar_t* text = key.GetString(Names()[i++ % kValues], nullptr);
    if (*text == 0) state.SkipWithError("not read");
  }
}

BENCHMARK(QorgenSet)->Name("settings_set/qorgen")->UseRealTime();
BENCHMARK(QorgenGet)->Name("settings_get/qorgen")->UseRealTime();

#ifdef QORGEN_BENCH_SQLITE
class Table {
 public:
  explicit Table(const char* synchronous) : path_(Place("settings.sqlite")) {
    std::remove(path_.c_str());
    good_ = sqlite3_open(path_.c_str(), &base_) == SQLITE_OK;
    Run("CREATE TABLE settings(name TEXT PRIMARY KEY, value TEXT)");
    Run(synchronous);
    set_ = Prepare("INSERT OR REPLACE INTO settings VALUES(?, ?)");
    get_ = Prepare("SELECT value FROM settings WHERE name = ?");
    Run("BEGIN");
    for (int i = 0; i < kValues; ++i) Set(i);
    Run("COMMIT");
  }
  ~Table() {
    sqlite3_finalize(set_);
    sqlite3_finalize(get_);
    sqlite3_close(base_);
    std::remove(path_.c_str());
  }

  // Outside a transaction each call is one.
  void Set(int i) {
    Bind(set_, 1, NarrowName(i));
    Bind(set_, 2, NarrowText(i));
    good_ &= sqlite3_step(set_) == SQLITE_DONE;
    sqlite3_reset(set_);
  }
  void Get(int i) {
    Bind(get_, 1, NarrowName(i));
    good_ &= sqlite3_step(get_) == SQLITE_ROW;
    const std::string text = reinterpret_cast<const char*>(sqlite3_column_text(get_, 0));
    good_ &= !text.empty();
    sqlite3_reset(get_);
  }
  bool good() const { return good_; }

 private:
  void Run(const char* sql) { good_ &= sqlite3_exec(base_, sql, nullptr, nullptr, nullptr) == SQLITE_OK; }
  sqlite3_stmt* Prepare(const char* sql) {
    sqlite3_stmt* statement = nullptr;
    good_ &= sqlite3_prepare_v2(base_, sql, -1, &statement, nullptr) == SQLITE_OK;
    return statement;
  }
  static void Bind(sqlite3_stmt* statement, int place, const std::string& text) {
    sqlite3_bind_text(statement, place, text.c_str(), static_cast<int>(text.size()), SQLITE_TRANSIENT);
  }

  std::string path_;
  sqlite3* base_ = nullptr;
  sqlite3_stmt* set_ = nullptr;
  sqlite3_stmt* get_ = nullptr;
  bool good_ = false;
};

void Sqlite(benchmark::State& state, void (Table::*work)(int), const char* synchronous) {
  Table table(synchronous);
  int i = 0;
  for (auto _ : state) (table.*work)(i++);
  if (!table.good()) state.SkipWithError("SQLite failed");
}

BENCHMARK_CAPTURE(Sqlite, set, &Table::Set, "PRAGMA synchronous=FULL")
    ->Name("settings_set/sqlite")
    ->UseRealTime();
BENCHMARK_CAPTURE(Sqlite, set, &Table::Set, "PRAGMA synchronous=OFF")
    ->Name("settings_set/sqlite_unsynced")
    ->UseRealTime();
BENCHMARK_CAPTURE(Sqlite, get, &Table::Get, "PRAGMA synchronous=FULL")
    ->Name("settings_get/sqlite")
    ->UseRealTime();
#endif

// An INI file as GLib keeps it.
class Ini {
 public:
  Ini() : path_(Place("settings.ini")) {
    for (int i = 0; i < kValues; ++i) Put(i);
    Save();
  }
  ~Ini() {
    g_key_file_free(file_);
    std::remove(path_.c_str());
  }
  void Set(int i) {
    Put(i);
    Save();
  }
  void Get(int i) {
    good_ &= g_key_file_load_from_file(file_, path_.c_str(), G_KEY_FILE_NONE, nullptr) != 0;
    char* text = g_key_file_get_string(file_, "settings", NarrowName(i).c_str(), nullptr);
    good_ &= text != nullptr;
    g_free(text);
  }
  bool good() const { return good_; }

 private:
  void Put(int i) { g_key_file_set_string(file_, "settings", NarrowName(i).c_str(), NarrowText(i).c_str()); }
  void Save() { good_ &= g_key_file_save_to_file(file_, path_.c_str(), nullptr) != 0; }

  std::string path_;
  GKeyFile* file_ = g_key_file_new();
  bool good_ = true;
};

void Glib(benchmark::State& state, void (Ini::*work)(int)) {
  Ini ini;
  int i = 0;
  for (auto _ : state) (ini.*work)(i++);
  if (!ini.good()) state.SkipWithError("GLib failed");
}

BENCHMARK_CAPTURE(Glib, set, &Ini::Set)->Name("settings_set/ini_glib")->UseRealTime();
BENCHMARK_CAPTURE(Glib, get, &Ini::Get)->Name("settings_get/ini_glib")->UseRealTime();

}  // namespace
