// The texts of the library: views, owners, conversions, digests, dates.
//
// Prints: Grüße, 5 units; z--; 1970-01-02T00:00:00Z is 86400, by the standard RFC 822: 86400;
// d41d8cd9
#include <iomanip>
#include <iostream>

#include "vosmere/cpp.h"

using namespace vosmere;

int main() {
  const Wide greeting(
      "Gr\u00FC\u00DF"
      "e");                             // owns UTF-16
  const WideView view(greeting.get());  // text and length, owns nothing
  const TextView text(greeting.get());  // the same, compared with any text
  HeapText copy(greeting.get());        // an OwnedText with HeapTextStorage
  SystemText system(copy.get());        // with SystemTextStorage: a BSTR
  copy.AssignOrEmpty(nullptr);
  ConvertedText utf8;
  int length = 0;
  if (CUnicodeTool::BSTRGetUTF8(system.get(), Out(utf8), &length) && text == greeting.get())
    std::cout << utf8.get() << ", " << view.size << " units; ";
  std::cout << ToUtf8(CVSMGlobal::PrefixZ()) << "; ";

  LONG seconds = 0;
  const SystemText iso(Wide("1970-01-02T00:00:00Z"));  // a BSTR is asked for
  CKQTime().GetEpochTimeFromDCDateBSTR(&seconds, iso.get());
  FILETIME fileTime;
  CKQTime::TimeTToFileTime(seconds, &fileTime);
  DateReading date;
  if (ReadDate("Fri, 02 Jan 1970 00:00:00 GMT", &date) && date.form == DateForm::kRfc822)
    std::cout << "1970-01-02T00:00:00Z is " << CKQTime::FileTimeToTimeT(&fileTime)
              << ", by the standard RFC 822: " << date.seconds << "; ";
  const SystemString shown(DisplayDate::GetShowDate(seconds));  // in the user's time zone

  CMD5Digest digest;  // of any bytes; CEncodingTool makes text of it
  unsigned char bytes[16];
  digest.Final(bytes);
  WChar name[33];
  CEncodingTool::GetWideCharLowerMD5(Wide(""), name);
  if (bytes[0] == 0xD4 && CBaseTool::GetModifyKeyState() == 0)
    std::cout << ToUtf8(name).substr(0, 8) << '\n';
}
