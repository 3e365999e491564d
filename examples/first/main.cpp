#include <qorgen/qorgen.h>

int main() {
  CQorDate date;  // day, month, era year: the form of import files
  CQorDateUtil::GetDateFromImpStr(L"05/03/R06", date);
  CString day, name, amount, key;
  const unsigned int style =
      DATEFORMAT_DATE | DATEFORMAT_KANJI | DATEFORMAT_WEEKKANJI | DATEFORMAT_ERAYEAR | DATEFORMAT_ERANAME;
  CQorDateUtil::FormatString(day, date.ToQORDATE().ToLongDate(), style, nullptr);
  CQorStringUtil::ToWideString(name, L"ｶﾌﾞｼｷｶﾞｲｼｬ ABC");
  CQorStringUtil::GetStringForSort(key, L"ｱ-ﾄｼｮｯﾌﾟ");
  amount.Format(L"%s | %s | %s", day.GetString(), name.GetString(), key.GetString());
  AfxMessageBox(amount, MB_OK, 0);  // without a screen: standard error, UTF-8
}
