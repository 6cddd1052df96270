// The examples of doc/exchange.md are the table of these tests.
#include "vosmere/cpp/import.h"

#include <sstream>

#include "tests/support/document.h"
#include "tests/support/test.h"
#include "vosmere/cpp/dates.h"
#include "vosmere/tree/tree_walk.h"

namespace vosmere::test::import {
namespace {

/// An item on one line: "folder/", "page -> address", "feed => address", and what else it has.
std::string LineOf(const RNode* link) {
  auto& item = *link->item;
  std::string line = ToUtf8(item.GetName());
  if (link->type == NT_FOLDER) line += '/';
  if (link->type != NT_FOLDER) {
    const auto& page = static_cast<CUrlNode&>(item);
    std::string address = ToUtf8(page.GetUrl());
    if (link->type == NT_COLCT) std::replace(address.begin(), address.end(), '\\', '/');
    line += (link->type == NT_URL ? " -> " : " => ") + address;
    if (!TextView(page.GetRelationUrl()).empty()) line += ", at " + TextView(page.GetRelationUrl());
    if (!TextView(page.GetAuthor()).empty()) line += ", by " + TextView(page.GetAuthor());
    const CUrlProp* const prop = page.GetUrlProp();
    for (const auto* tag = prop ? prop->GetTagsHead() : nullptr; tag; tag = tag->next)
      line += " #" + ToUtf8(tag->data);
  }
  LONG times[3];
  item.GetNodeStat()->GetStatTime(&times[0], &times[1], &times[2]);
  constexpr const char* kNames[] = {", added ", ", modified ", ", visited "};
  for (int i = 0; i < 3; ++i)
    if (item.GetNodeStat()->GetSetTimes() >> i & 1) line += kNames[i] + std::to_string(times[i]);
  return *item.GetDescription() ? line + ": " + ToUtf8(item.GetDescription()) : line;
}

std::string TextOf(RNode* root) {
  std::string text = LineOf(root) + '\n';
  std::size_t level = 1;
  const auto enter = [&](RNode* link) {
    text += std::string(2 * level++, ' ') + LineOf(link) + '\n';
    return true;
  };
  WalkBelow(root, enter, [&](RNode*) { --level; });
  return text;
}

/// What an import made, or why it failed.
std::string After(const Result<Imported>& imported) {
  if (!imported) return ToString(imported.error()) + '\n';
  if (imported->tree) return TextOf(imported->tree.get());
  CColctNode& colct = *imported->collection;
  RNode* const root = colct.GetLocRNodeRoot();
  SetName(*root->item, colct.GetName());
  const std::string site = ToUtf8(colct.GetRelationUrl());
  return (site.empty() ? "" : "the site is " + site + '\n') + TextOf(root);
}

std::string RepairsOf(const Result<Imported>& imported) {
  std::string text;
  if (imported)
    for (const Repair& repair : imported->repairs) text += ToString(repair) + '\n';
  return text;
}

struct Example {
  std::string name, before, repairs, after;
};

/// "\xHH" is a byte.
std::string Unescaped(const std::string& text) {
  std::string bytes;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool isByte = text.compare(i, 2, "\\x") == 0;
    bytes += isByte ? static_cast<char>(std::stoi(text.substr(i + 2, 2), nullptr, 16)) : text[i];
    if (isByte) i += 3;
  }
  return bytes;
}

std::vector<Example> Examples() {
  std::vector<Example> examples;
  std::istringstream document(ReadBytes(VOSMERE_TEST_DATA "/../../doc/exchange.md"));
  std::string* block = nullptr;
  for (std::string line; std::getline(document, line);) {
    if (line.starts_with("### ")) examples.push_back({line.substr(4), {}, {}, {}});
    if (line == "```")
      block = nullptr;
    else if (block)
      *block += line + '\n';
    else if (line == "```before")
      block = &examples.back().before;
    else if (line == "```repairs")
      block = &examples.back().repairs;
    else if (line == "```after")
      block = &examples.back().after;
  }
  return examples;
}

TEST(Import, RepairsWhatTheDocumentShows) {
  const std::vector<Example> examples = Examples();
  EXPECT_GT(examples.size(), 30u);
  for (const Example& example : examples) {
    SCOPED_TRACE(example.name);
    const std::string bytes = Unescaped(example.before.substr(0, example.before.size() - 1));
    const Result<Imported> imported = Import(Bytes(bytes));
    EXPECT_EQ(RepairsOf(imported), example.repairs);
    EXPECT_EQ(After(imported), example.after);
  }
}

}  // namespace
}  // namespace vosmere::test::import
