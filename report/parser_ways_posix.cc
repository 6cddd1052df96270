// Mutants of documents through both ways of the parser: what the fast path accepts, libxml2 must
// accept with the same tree.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "report/mutants.h"
#include "report/section.h"
#include "vosmere/platform/posix/xml/builder.h"
#include "vosmere/platform/posix/xml/plain.h"
#include "vosmere/platform/xml_node.h"

using namespace vosmere;
using namespace vosmere::posix;
using namespace vosmere::report;

namespace {

WChar UnitOf(const XmlValue& value, std::size_t at) {
  return value.isWide ? static_cast<const WChar*>(value.text)[at]
                      : static_cast<WChar>(static_cast<const unsigned char*>(value.text)[at]);
}

bool IsSame(const XmlValue& a, const XmlValue& b) {
  if (a.size != b.size) return false;
  for (std::size_t i = 0; i < a.size; ++i)
    if (UnitOf(a, i) != UnitOf(b, i)) return false;
  return true;
}

bool IsSame(const XmlName& a, const XmlName& b) {
  return a.type == b.type && a.utf8 == b.utf8;
}

bool HaveSameAttributes(const XmlRecord& a, const XmlRecord& b) {
  if (a.element.attributeCount != b.element.attributeCount) return false;
  for (std::size_t i = 0; i < a.element.attributeCount; ++i) {
    const XmlValue &ours = a.attributes()[i], &theirs = b.attributes()[i];
    if (!IsSame((*a.name->names)[ours.attribute], (*b.name->names)[theirs.attribute])) return false;
    if (!IsSame(ours, theirs)) return false;
  }
  return true;
}

/// Mutants are small, so that recursion does no harm.
bool IsSame(const XmlRecord* a, const XmlRecord* b) {
  for (; a && b; a = a->next, b = b->next) {
    if (!IsSame(*a->name, *b->name)) return false;
    if (a->name->type != kXmlElement) {
      if (!IsSame(a->value, b->value)) return false;
    } else if (!HaveSameAttributes(*a, *b) ||
               !IsSame(a->element.firstChild, b->element.firstChild)) {
      return false;
    }
  }
  return !a && !b;
}

/// Whether a column is known may differ; what is known has to agree.
bool HaveSamePlaces(const XmlTree& ours, const XmlRecord* a, const XmlTree& theirs,
                    const XmlRecord* b) {
  for (; a && b; a = a->next, b = b->next) {
    if (a->name->type != kXmlElement) continue;
    const XmlPlace here = ours.places.at(a), there = theirs.places.at(b);
    if (here.line != there.line || (there.column != 0 && here.column != there.column) ||
        !HaveSamePlaces(ours, a->element.firstChild, theirs, b->element.firstChild))
      return false;
  }
  return true;
}

bool ParsesByLibxml2(XmlTree& tree, std::string_view document, const char* encoding) {
  MemorySource source(document);
  try {
    BuildXmlTree(tree, source, encoding);
  } catch (const DocumentFailure&) {
    return false;
  }
  return true;
}

struct Counts {
  std::uint64_t mutants = 0;
  std::uint64_t byBoth = 0;
  std::uint64_t byLibxml2 = 0;
  std::uint64_t byNone = 0;
  std::uint64_t bytes = 0;
  std::vector<std::string> different;

  void Add(const Counts& other) {
    mutants += other.mutants;
    byBoth += other.byBoth;
    byLibxml2 += other.byLibxml2;
    byNone += other.byNone;
    bytes += other.bytes;
    different.insert(different.end(), other.different.begin(), other.different.end());
  }
};

void Compare(const std::string& document, const char* encoding, bool withPlaces, Counts& counts) {
  XmlTree ours, theirs;
  ours.keepsPlaces = theirs.keepsPlaces = withPlaces;
  const bool isPlain = BuildPlainXmlTree(ours, document, encoding);
  const bool loads = ParsesByLibxml2(theirs, document, encoding);
  ++counts.mutants;
  counts.bytes += document.size();
  ++(isPlain ? counts.byBoth : loads ? counts.byLibxml2 : counts.byNone);
  if (isPlain &&
      !(loads && IsSame(ours.arena.root, theirs.arena.root) &&
        (!withPlaces || HaveSamePlaces(ours, ours.arena.root, theirs, theirs.arena.root))))
    counts.different.push_back(document);
}

Counts TryMutants(std::uint64_t seed, std::uint64_t count) {
  Counts counts;
  std::string document;
  Dice dice(seed);
  while (counts.mutants < count && counts.different.size() < 10) {
    MakeMutant(dice, document);
    const char* const encoding = dice.OneIn(4) ? "UTF-8" : nullptr;
    const bool withPlaces = dice.OneIn(8);
    Compare(document, encoding, withPlaces, counts);
  }
  return counts;
}

std::string Escaped(const std::string& text) {
  std::string all;
  for (const char c : text) {
    char code[8];
    std::snprintf(code, sizeof code, c >= ' ' && c < 0x7F && c != '\\' ? "%c" : "\\x%02X",
                  static_cast<unsigned char>(c));
    all += code;
  }
  return all;
}

std::string Percent(std::uint64_t part, std::uint64_t whole) {
  char text[16];
  std::snprintf(text, sizeof text, "%.1f %%",
                100.0 * static_cast<double>(part) / static_cast<double>(whole));
  return text;
}

}  // namespace

int main(int argc, char** argv) {
  Section section(argc, argv, "The two ways of the parser");
  const std::size_t threads = std::max(1U, std::thread::hardware_concurrency());
  const std::uint64_t each = (section.isShort() ? 400'000 : 100'000'000) / threads;
  Counts all;
  std::mutex mutex;
  std::vector<std::jthread> workers;
  for (std::size_t i = 0; i < threads; ++i)
    workers.emplace_back([&, i] {
      const Counts counts = TryMutants(i + 1, each);
      const std::lock_guard lock(mutex);
      all.Add(counts);
    });
  workers.clear();
  section.Say(
      "Plain documents are read by a fast path, all others by libxml2. Small documents from a "
      "grammar and a "
      "table were changed in up to three places, by a byte or a token, and read in both ways. What "
      "the fast "
      "path accepts, libxml2 must accept, with the same names, values and order; for one mutant in "
      "eight the "
      "places of the elements in the text were compared too. For a quarter the encoding was given "
      "from "
      "outside.");
  section.Row("Mutants", "Number", "Share");
  section.Row("accepted in both ways, and compared", all.byBoth, Percent(all.byBoth, all.mutants));
  section.Row("accepted by libxml2 alone, not plain", all.byLibxml2,
              Percent(all.byLibxml2, all.mutants));
  section.Row("refused in both ways", all.byNone, Percent(all.byNone, all.mutants));
  section.Row("all, of " + Grouped(all.bytes / std::max<std::uint64_t>(all.mutants, 1)) +
                  " bytes on average",
              all.mutants, "");
  section.Row("**different in verdict or tree**", all.different.size(), "");
  for (const std::string& document : all.different)
    section.Wrong("read in two ways differently: " + Escaped(document));
  return section.End();
}
