// The verbs for one document.
#include <fstream>
#include <iostream>
#include <memory>

#include "tools/bookmarks.h"
#include "tools/browse.h"
#include "tools/check.h"
#include "tools/colors.h"
#include "tools/contents.h"
#include "tools/document.h"
#include "tools/html_page.h"
#include "tools/note.h"
#include "tools/output.h"
#include "tools/report.h"
#include "tools/show.h"
#include "tools/text.h"
#include "tools/verbs.h"

namespace vosmere::tool {
namespace {

int Show(const std::string& file, bool asJson) {
  const AnyDocument document = LoadDocument(file);
  const Kind& kind = KindOf(document);
  asJson ? ShowJson(ContentOf(document), std::cout)
         : tool::Show(ContentOf(document), kind.what, kind.counts, std::cout);
  if (asJson) std::cout << '\n';
  return kFine;
}

/// Writes the document, and what is wrong with it, as an HTML page.
int ShowAsHtml(const std::string& file, const std::string& out) {
  constexpr std::size_t kPlaces = 1000;
  Losses findings(kPlaces);
  const AnyDocument document = LoadDocument(file, &findings);
  try {
    findings.Add(SaveDocument(document, file, kPlaces).losses);
  } catch (const Failure& failure) {
    if (failure.exitCode == kTrouble) throw;
    std::cerr << ColoredMessage(failure.message, Stream::kErrors) << '\n';
  }
  WriteOutput(out, [&](const FilePath& path) -> std::optional<Error> {
    std::ofstream page(path.native(), std::ios::binary);
    ShowHtml(ContentOf(document), InputName(file), findings, page);
    page.close();
    if (page) return {};
    return detail::FileError(path, "cannot be written", errno);
  });
  return kFine;
}

void AddShow(CLI::App& app, int& exitCode) {
  const auto files = std::make_shared<Files>();
  CLI::App* const show =
      app.add_subcommand("show", "Print the contents of a document")->footer(kExitCodes);
  show->add_option("FILE", files->in, "Document or folder of a store")->required();
  CLI::Option* const html =
      show->add_option("--html", files->out,
                       "Write a page for browsers instead: a tree that folds, with a search field "
                       "and the findings of `vosmere check`")
          ->type_name("OUT");
  show->add_flag("--json", files->json,
                 "Print JSON: each item with its kind and fields, folders with children. Values "
                 "that the document does not have are null; marks are false or 0")
      ->excludes(html);
  OnRun(*show, exitCode, [files] {
    return files->out.empty() ? Show(files->in, files->json) : ShowAsHtml(files->in, files->out);
  });
}

void AddCheck(CLI::App& app, int& exitCode) {
  const auto options = std::make_shared<CheckOptions>();
  const auto files = std::make_shared<std::vector<std::string>>();
  CLI::App* const check = app.add_subcommand(
      "check", "Check that documents load, and list what a saved copy would lose or add");
  check->footer(
      std::string(kExitCodes) +
      "\n1 also if a document cannot be saved, or has warnings with --strict. With several "
      "files, the highest code counts.");
  check->add_option("FILE", *files, "Documents or folders of stores")->required();
  check->add_flag("--all", options->all, "List every place of a warning, not only the first few");
  check->add_flag("--strict", options->strict, "Exit with 1 if there are warnings");
  CLI::Option* const json = check->add_flag(
      "--json", options->json,
      "Print one line of JSON per file: file, loads, copyLoads, error, line, column, warnings");
  CLI::Option* const sarif =
      check->add_flag("--sarif", options->sarif, "Print a SARIF 2.1.0 log, which editors read")
          ->excludes(json);
  check->add_flag("--quiet", options->quiet, "Print nothing, except why a file cannot be read")
      ->excludes(json, sarif);
  OnRun(*check, exitCode, [=] { return Check(*files, *options); });
}

int Copy(const std::string& in, const std::string& out, bool asJson) {
  KeepReportApart(out, asJson);
  Losses losses(kPlacesShown);
  const AnyDocument document = LoadDocument(in, &losses);
  const SavedBytes saved =
      IsBookmarkName(out) ? BookmarksOf(document, in) : SaveDocument(document, in, kPlacesShown);
  WriteOutput(out, [&](const FilePath& path) { return WriteFile(path, saved.bytes); });
  losses.Add(saved.losses);
  if (asJson)
    PrintReport({{"warnings", JsonOf(losses)}});
  else
    PrintWarnings(std::cerr, InputName(in), losses);
  return kFine;
}

void AddCopy(CLI::App& app, int& exitCode) {
  const auto files = std::make_shared<Files>();
  CLI::App* const copy =
      app.add_subcommand("copy", "Load a document and save it as a new file that is sure to load")
          ->footer(kExitCodes);
  copy->add_option("IN", files->in, "Document or folder of a store")->required();
  copy->add_option("OUT", files->out,
                   "File to write: replaced as a whole or left unchanged; can be IN. With the "
                   "ending .html, bookmarks that browsers import")
      ->required();
  copy->add_flag("--json", files->json, "Print the warnings as JSON");
  OnRun(*copy, exitCode, [files] { return Copy(files->in, files->out, files->json); });
}

void AddNote(CLI::App& app, int& exitCode) {
  const auto options = std::make_shared<NoteOptions>();
  CLI::App* const note = app.add_subcommand("note", "Export an item of a document as an HTML page");
  note->footer(kExitCodes);
  note->add_option("IN", options->in, "Document or folder of a store")->required();
  note->add_option("ITEM", options->item,
                   "Name or identity of the item, or its folders and name as in 'News > Daily'")
      ->required();
  note->add_option("OUT", options->out, "HTML file to write")->required();
  note->add_flag("--json", options->json, "Print the place and the identity of the item as JSON");
  OnRun(*note, exitCode, [options] { return Note(*options); });
}

}  // namespace

void AddDocumentVerbs(CLI::App& app, int& exitCode) {
  AddShow(app, exitCode);
  AddBrowse(app, exitCode);
  AddCheck(app, exitCode);
  AddCopy(app, exitCode);
  AddNote(app, exitCode);
}

}  // namespace vosmere::tool
