// Reads the fields of a date whose places are fixed, several at once.
#pragma once

#include <cstdint>

namespace vosmere {

/// Eight characters in a fixed form, such as "0000-00-": 0 is any digit, x is any ASCII character,
/// and every other character is itself. They are checked and read together, in the bytes of one
/// number, which takes a quarter of the time of one character after the other.
class FixedForm {
 public:
  /// The numbers with two digits that begin at each of the eight characters.
  class Numbers {
   public:
    int operator[](int place) const { return static_cast<int>(bytes >> 8 * place & 0xFF); }
    std::uint64_t bytes;
  };

  constexpr explicit FixedForm(const char (&form)[9]) {
    for (int i = 0; i < 8; ++i) {
      // With its expected character taken away by XOR, what is left of a digit is at most 9, and of
      // any other character 0. Adding the distance to 0x80 sets the highest bit of a larger rest.
      const char c = form[i];
      expected_ |= std::uint64_t{c == 'x' ? 0u : static_cast<unsigned char>(c)} << 8 * i;
      fixed_ |= std::uint64_t{c == 'x' ? 0u : 0xFFu} << 8 * i;
      distance_ |= std::uint64_t{c == 'x' ? 0u : c == '0' ? 0x80u - 10 : 0x7Fu} << 8 * i;
    }
  }

  /// Stores the numbers; whether the text has the form.
  bool Read(const char* text, Numbers* numbers) const {
    const std::uint64_t rest = Load(text) ^ expected_;
    const std::uint64_t digits = rest & fixed_;  // so that no product carries into the next byte
    numbers->bytes = digits * 10 + (digits >> 8);
    return ((rest | (rest + distance_)) & 0x8080808080808080) == 0;
  }

 private:
  // One load instruction for compilers, whatever the order of bytes.
  static std::uint64_t Load(const char* text) {
    const auto byte = [=](int i) {
      return std::uint64_t{static_cast<unsigned char>(text[i])} << 8 * i;
    };
    return byte(0) | byte(1) | byte(2) | byte(3) | byte(4) | byte(5) | byte(6) | byte(7);
  }

  std::uint64_t expected_ = 0;
  std::uint64_t fixed_ = 0;  // all bits where the form has no x
  std::uint64_t distance_ = 0;
};

/// A date and a time of day. The month counts from 1.
struct FixedDate {
  int year, month, day, hour, minute, second;

  /// "1994-11-06T08:49:37", with any ASCII character for the T. False for anything else.
  static constexpr int kIsoLength = 19;
  bool ReadIso(const char* text) {
    static constexpr FixedForm kDate("0000-00-"), kMiddle("00x00:00"), kTime("00:00:00");
    FixedForm::Numbers date, middle, time;
    if (!kDate.Read(text, &date) || !kMiddle.Read(text + 8, &middle) ||
        !kTime.Read(text + 11, &time))
      return false;
    *this = {date[0] * 100 + date[2], date[5], middle[0], time[0], time[3], time[6]};
    return true;
  }

  /// "Sun, 06 Nov 1994 08:49:37", with any ASCII characters for the names; the month is 0. False
  /// for anything else.
  static constexpr int kMailLength = 25;
  bool ReadMail(const char* text) {
    static constexpr FixedForm kStart("xxx, 00 "), kDate("xxx 0000"), kTime("00:00:00");
    FixedForm::Numbers start, date, time;
    if (!kStart.Read(text, &start) || !kDate.Read(text + 8, &date) || text[16] != ' ' ||
        !kTime.Read(text + 17, &time))
      return false;
    *this = {date[4] * 100 + date[6], 0, start[5], time[0], time[3], time[6]};
    return true;
  }
};

}  // namespace vosmere
