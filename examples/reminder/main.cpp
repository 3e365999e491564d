// Writes a payment reminder from a template and keeps the values for the next one: the template document, the
// file-backed registry, dates and numbers of the library in one small program.

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <string>

#include "qorgen/qorgen.h"

#include "utf8.h"

namespace {

const char* const kUsage =
    "usage: --output FILE [--template FILE] [--customer NAME] [--amount YEN] [--due DD/MM/ERA-YEAR]\n"
    "What isn't given is that of the last reminder. Dates are written 31/10/R08 or 31-10-2026.";

struct Options {
  std::string output, text = QORGEN_REMINDER_TEMPLATE, customer, amount, due;
};

Options ParseOptions(int argc, char** argv) {
  Options options;
  for (int at = 1; at < argc; ++at) {
    const std::string word = argv[at];
    std::string* const value = word == "--output"     ? &options.output
                               : word == "--template" ? &options.text
                               : word == "--customer" ? &options.customer
                               : word == "--amount"   ? &options.amount
                               : word == "--due"      ? &options.due
                                                      : nullptr;
    if (value == nullptr) throw std::invalid_argument("unknown option '" + word + "'");
    if (++at == argc || *argv[at] == '\0') throw std::invalid_argument(word + " needs a value");
    *value = argv[at];
  }
  if (options.output.empty()) throw std::invalid_argument("--output is missing");
  return options;
}

struct Reminder {
  CString customer;
  long amount = 0;
  QORDATE due;
};

long ReadAmount(const std::string& text) {
  const CString wide = FromUtf8(text);
  const long amount = CQorNumUtil::ToLong(wide);
  CString plain;
  plain.Format(L"%d", static_cast<int>(amount));
  if (amount <= 0 || plain != wide) throw std::invalid_argument("--amount takes whole yen, up to 2147483647");
  return amount;
}

QORDATE ReadDue(const std::string& text) {
  CQorDate date;
  date.Empty();
  if (CQorDateUtil::GetDateFromImpStr(FromUtf8(text), date) == 0 || date.IsEmpty()) {
    throw std::invalid_argument("'" + text + "' is no date");
  }
  return date;
}

// The values given, and those of the last reminder for the others.
Reminder Collect(const Options& options, CQorRegFileKey& last) {
  const auto stored = [&last](const std::string& given, const wchar_t* name, const char* option) {
    if (!given.empty()) return false;
    if (last.IsExistValue(name)) return true;
    throw std::invalid_argument(std::string(option) + " is needed for the first reminder");
  };
  Reminder reminder;
  reminder.customer = stored(options.customer, L"得意先", "--customer")
                          ? CString(last.GetString(L"得意先", L""))
                          : FromUtf8(options.customer);
  reminder.amount =
      stored(options.amount, L"金額", "--amount") ? last.GetLong(L"金額", 0) : ReadAmount(options.amount);
  reminder.due =
      stored(options.due, L"期日", "--due") ? QORDATE(last.GetInt(L"期日", 0)) : ReadDue(options.due);
  return reminder;
}

bool Keep(const Reminder& reminder, CQorRegFileKey& last) {
  return last.SetString(L"得意先", reminder.customer) && last.SetLong(L"金額", reminder.amount) &&
         last.SetInt(L"期日", reminder.due.ToLongDate());
}

// "令和08年10月31日(土)"
CString DayText(const QORDATE& date) {
  CString text;
  constexpr unsigned int style =
      DATEFORMAT_DATE | DATEFORMAT_KANJI | DATEFORMAT_WEEKKANJI | DATEFORMAT_ERAYEAR | DATEFORMAT_ERANAME;
  CQorDateUtil::FormatString(text, date.ToLongDate(), style, nullptr);
  return text;
}

// "１，２３４，５６７", the form of amounts in letters.
CString AmountText(long amount) {
  wchar_t* const grouped = CQorNumUtil::FormatString(amount, NUMFORMAT_GROUP, nullptr, 0, L' ');
  CString text;
  CQorStringUtil::ToWideString(text, grouped);
  QorFree(grouped);
  return text;
}

void Fill(CQorTemplateDoc& letter, const Reminder& reminder) {
  const QORDATE today = CQorDateUtil::GetToday();
  CString days;
  days.Format(L"%d", static_cast<int>(CQorDate(today) - CQorDate(reminder.due)));
  letter.SetString(L"TODAY", DayText(today));
  letter.SetString(L"CUSTOMER", reminder.customer);
  letter.SetString(L"AMOUNT", AmountText(reminder.amount));
  letter.SetString(L"DUE", DayText(reminder.due));
  letter.SetString(L"DAYS", days);
}

int Fail(const std::string& sentence) {
  std::fprintf(stderr, "%s.\n", sentence.c_str());
  return 1;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    const Options options = ParseOptions(argc, argv);
    CQorRegFileKey settings(HKEY_CURRENT_USER);
    const std::unique_ptr<CQorRegFileKey> last(settings.OpenSubKey(L"qorGen\\督促状", 1));
    if (last == nullptr) return Fail("The folder of the settings could not be made");

    const Reminder reminder = Collect(options, *last);
    CQorTemplateDoc letter;
    if (!letter.LoadTemplateFile(FromUtf8(options.text))) return Fail(options.text + " does not exist");
    Fill(letter, reminder);
    if (!letter.WriteFile(FromUtf8(options.output))) return Fail(options.output + " could not be written");
    if (!Keep(reminder, *last)) return Fail("The values could not be kept for the next reminder");
    std::printf("%s: %s, %s\n", options.output.c_str(), ToUtf8(reminder.customer).c_str(),
                ToUtf8(AmountText(reminder.amount)).c_str());
    return 0;
  } catch (const std::invalid_argument& error) {
    Fail(error.what());
    std::fprintf(stderr, "%s\n", kUsage);
    return 1;
  }
}
