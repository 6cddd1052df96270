// A section of the report, as a program prints it: a heading, sentences, tables, and what is wrong.
//
//   int main(int argc, char** argv) {
//     Section section(argc, argv, "Depth");
//     section.Say("Documents of so many levels were loaded.");
//     section.Row("levels", "seconds", "result");      // the first row of a table is its head
//     section.Row(1000, 0.25, "fine");
//     if (lost) section.Wrong("an item is lost");      // to stderr, and End() returns 1
//     return section.End();
//   }
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdio>
#include <string>
#include <string_view>

namespace vosmere::report {

/// 1234567 as "1,234,567".
inline std::string Grouped(unsigned long long number) {
  std::string text = std::to_string(number);
  for (std::size_t at = text.size(); at > 3;) text.insert(at -= 3, ",");
  return text;
}

class Section {
 public:
  /// Of the options, --short asks for the form that takes seconds. The first argument that is no
  /// option names the file for the numbers of the plot.
  Section(int argc, char** argv, const char* heading) {
    for (int i = 1; i < argc; ++i) {
      if (std::string_view(argv[i]) == "--short")
        isShort_ = true;
      else
        dataFile_ = argv[i];
    }
    std::printf("## %s\n", heading);
  }

  bool isShort() const { return isShort_; }

  /// Null when no plot is wanted.
  const char* dataFile() const { return dataFile_; }

  /// A paragraph; it ends a table.
  void Say(const std::string& text) {
    std::printf("\n%s\n", text.c_str());
    columns_ = 0;
  }

  /// A row of a table. Numbers are aligned to the right by the head's columns, all but the first.
  template <class... Cells>
  void Row(const Cells&... cells) {
    const bool isHead = columns_ == 0;
    columns_ = sizeof...(cells);
    if (isHead) std::putchar('\n');
    std::putchar('|');
    (std::printf(" %s |", Cell(cells).c_str()), ...);
    std::putchar('\n');
    if (!isHead) return;
    std::fputs("|---|", stdout);
    for (std::size_t i = 1; i < columns_; ++i) std::fputs("---:|", stdout);
    std::putchar('\n');
  }

  void Wrong(const std::string& what) {
    std::fprintf(stderr, "%s\n", what.c_str());
    isWrong_ = true;
  }

  /// What main returns.
  int End() const {
    std::fflush(stdout);
    return isWrong_;
  }

 private:
  static std::string Cell(const std::string& text) { return text; }
  static std::string Cell(const char* text) { return text; }
  static std::string Cell(std::unsigned_integral auto number) { return Grouped(number); }
  static std::string Cell(std::signed_integral auto number) {
    return number < 0 ? "-" + Grouped(0ULL - static_cast<unsigned long long>(number))
                      : Grouped(static_cast<unsigned long long>(number));
  }
  static std::string Cell(double number) {
    char text[32];
    std::snprintf(text, sizeof text, "%.3g", number);
    return text;
  }

  bool isShort_ = false;
  bool isWrong_ = false;
  const char* dataFile_ = nullptr;
  std::size_t columns_ = 0;
};

}  // namespace vosmere::report
