// Small XML documents, made from a grammar or picked from a table, and mutants of them at the level
// of bytes and of tokens. The same seed gives the same documents everywhere.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string>
#include <string_view>

namespace vosmere::report {

/// A generator of pseudo-random numbers that is fast and the same on every platform.
class Dice {
 public:
  explicit Dice(std::uint64_t seed) : state_(seed) {
    state_ = Next();  // otherwise the next seed would give the same numbers, one later
  }

  std::uint64_t Next() {
    state_ += 0x9E3779B97F4A7C15;
    std::uint64_t mixed = (state_ ^ (state_ >> 30)) * 0xBF58476D1CE4E5B9;
    mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EB;
    return mixed ^ (mixed >> 31);
  }
  /// From 0 to `bound` - 1.
  std::size_t Below(std::size_t bound) { return (Next() >> 32) * bound >> 32; }
  bool OneIn(std::size_t count) { return Below(count) == 0; }
  template <class Table>
  auto Of(const Table& table) {
    return table[Below(std::size(table))];
  }

 private:
  std::uint64_t state_;
};

inline constexpr std::string_view kXmlTokens[] = {"&lt;",
                                                  "&amp;",
                                                  "&apos;",
                                                  "&quot;",
                                                  "&#65;",
                                                  "&#x1F600;",
                                                  "&#0;",
                                                  "&#xD;",
                                                  "&e;",
                                                  "&",
                                                  "<![CDATA[",
                                                  "]]>",
                                                  "<!--",
                                                  "-->",
                                                  "--",
                                                  "<?p ",
                                                  "?>",
                                                  "<?xml version='1.0'?>",
                                                  "\r\n",
                                                  "\r",
                                                  "\t",
                                                  " xmlns='u'",
                                                  " xmlns:p='v'",
                                                  " xmlns:p=''",
                                                  " xml:lang='e'",
                                                  " k='v'",
                                                  " p:k=\"w\"",
                                                  " k",
                                                  "='",
                                                  "<b/>",
                                                  "<p:b>",
                                                  "</p:b>",
                                                  "<b>",
                                                  "</b>",
                                                  "</",
                                                  "/>",
                                                  "<",
                                                  ">",
                                                  "'",
                                                  "\"",
                                                  "\xEF\xBB\xBF",
                                                  "\xC3\xA9",
                                                  "\xE4\xB8\xAD",
                                                  "\xF0\x9F\x98\x80",
                                                  "\xEF\xBF\xBE",
                                                  "\xED\xA0\x80",
                                                  "\xC0\x80",
                                                  "<!DOCTYPE a>",
                                                  "<!DOCTYPE a [<!ENTITY e 'x'>]>",
                                                  "]",
                                                  " ",
                                                  "xmlns",
                                                  "xml:",
                                                  ":",
                                                  "abcdefghijklmnopqr",
                                                  "a.b-c_d"};

inline constexpr std::string_view kXmlSeeds[] = {
    "<?xml version=\"1.0\" encoding='utf-8' standalone = \"yes\" ?>\r\n<!-- b --><?go there ?>\n<r "
    "a=\"1\"/>\n",
    "<r xmlns='urn:d' xmlns:v=\"urn:v\" v:b = 'x&amp;y\t\r\n&#10;\"' v:c=''>t\xC3\xA9xt "
    "&lt;&#x1F600;</r>",
    "<r>]] > \xF0\x9F\x98\x80\xE4\xB8\xAD behind more than a word\r<v:e/><e k='a-long-name.of'></e "
    "></r>",
    "<r><![CDATA[<a>&amp;]]]]><![CDATA[]]>&gt;<!----><?p?>\r\n</r>\n<!-- behind -->\n",
    "\xEF\xBB\xBF<opml version='1.0'><body><outline text='a' type='link' "
    "url='http://a.example/?b=1&amp;c'/></body></opml>",
    "<rss><channel><title>t</title><item><title>a &amp; "
    "b</title><link>http://x/</link></item></channel></rss>",
    "<a><b><c><d><e f='g'>h</e></d></c>i<c/></b>\n\n<b>j</b></a>",
    "<xml:a xml:lang='en' a:b='undeclared'><a:c/></xml:a>"};

/// Appends what a small grammar of documents yields.
class XmlGrammar {
 public:
  XmlGrammar(Dice& dice, std::string& text) : dice_(dice), text_(text) {}

  void Document() {
    if (dice_.OneIn(4)) text_ += "<?xml version=\"1.0\" encoding=\"UTF-8\"?>";
    Misc();
    Element(0);
    Misc();
  }

 private:
  void Misc() {
    if (dice_.OneIn(6)) text_ += dice_.Of(kMisc);
  }
  void Element(int depth) {
    const std::string_view name = dice_.Of(kNames);
    (text_ += '<') += name;
    const std::size_t first = dice_.Below(std::size(kAttributes));
    for (std::size_t i = dice_.Below(4); i > 0; --i)
      Attribute(kAttributes[(first + i) % std::size(kAttributes)]);
    if (dice_.OneIn(3)) {
      text_ += "/>";
      return;
    }
    text_ += '>';
    for (std::size_t i = dice_.Below(4); i > 0; --i) Content(depth);
    ((text_ += "</") += name) += '>';
  }
  void Attribute(std::string_view name) {
    const char quote = dice_.OneIn(2) ? '\'' : '"';
    (((text_ += ' ') += name) += '=') += quote;
    Text();
    text_ += quote;
  }
  void Content(int depth) {
    switch (dice_.Below(8)) {
      case 0: text_ += dice_.Of(kMisc); break;
      case 1: text_ += "<![CDATA[<x>]]>"; break;
      case 2:
      case 3: Text(); break;
      default: depth < 3 ? Element(depth + 1) : Text();
    }
  }
  void Text() {
    for (std::size_t i = dice_.Below(3); i > 0; --i) text_ += dice_.Of(kTexts);
  }

  static constexpr std::string_view kMisc[] = {"<!--c-->", "<?p q?>", "\n", " \r\n", "<?p?>"};
  static constexpr std::string_view kNames[] = {"a", "b:c",  "outline", "a-name.of-more_letters",
                                                "x", "xml:y"};
  static constexpr std::string_view kAttributes[] = {
      "k", "text", "n:k", "xmlns:n", "xmlns", "xml:lang", "an-attribute-of-more-letters"};
  static constexpr std::string_view kTexts[] = {"x",
                                                "some words",
                                                "&lt;",
                                                "&#x4E2D;",
                                                "\xC3\xA9",
                                                "\xE4\xB8\xAD",
                                                "\xF0\x9F\x98\x80",
                                                "]]",
                                                "\r\n",
                                                "\t",
                                                "&amp;amp;",
                                                "a text of more than thirty-two bytes, all plain",
                                                "&#13;",
                                                "  "};

  Dice& dice_;
  std::string& text_;
};

/// Changes `text` in one place, by a byte or by a token.
inline void MutateXml(Dice& dice, std::string& text) {
  const std::size_t at = dice.Below(text.size() + 1);
  const std::size_t length = std::min(dice.Below(12), text.size() - at);
  switch (dice.Below(8)) {
    case 0: text.insert(at, 1, static_cast<char>(dice.Below(256))); break;
    case 1: text.erase(at, 1); break;
    case 2: text.erase(at, length); break;
    case 3: text.insert(dice.Below(text.size() + 1), text.substr(at, length)); break;
    case 4:
      if (at < text.size()) text[at] = static_cast<char>(text[at] ^ (1 << dice.Below(8)));
      break;
    case 5: text.replace(at, length, dice.Of(kXmlTokens)); break;
    default: text.insert(at, dice.Of(kXmlTokens));
  }
}

/// A document, changed in up to three places, or in none.
inline void MakeMutant(Dice& dice, std::string& text) {
  text.clear();
  if (dice.OneIn(3))
    text = dice.Of(kXmlSeeds);
  else
    XmlGrammar(dice, text).Document();
  constexpr int kChanges[] = {0, 0, 0, 1, 1, 1, 2, 3};
  for (int i = dice.Of(kChanges); i > 0; --i) MutateXml(dice, text);
}

}  // namespace vosmere::report
