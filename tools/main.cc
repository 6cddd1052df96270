// The command line of vosmere: its options, its help, and the verbs that they run.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <cerrno>
#include <fstream>
#include <iostream>
#include <map>
#include <system_error>

#include "tools/bookmarks.h"
#include "tools/check.h"
#include "tools/colors.h"
#include "tools/contents.h"
#include "tools/date.h"
#include "tools/diff.h"
#include "tools/document.h"
#include "tools/document_source.h"
#include "tools/favorites.h"
#include "tools/html_page.h"
#include "tools/import.h"
#include "tools/merge.h"
#include "tools/note.h"
#include "tools/output.h"
#include "tools/platform.h"
#include "tools/post.h"
#include "tools/report.h"
#include "tools/store.h"
#include "tools/text.h"
#include "tools/usage.h"
#include "vosmere/base/version.h"

namespace vosmere::tool {
namespace {

constexpr char kExitCodes[] =
    "Exit codes: 0 success; 1 a document is invalid, or does not have what was asked for; 2 wrong "
    "usage, or a file cannot be read or written.\n"
    "The file name - means standard input or output; ./- is a file of that name.";

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

/// Shows how dates are read: the texts, or each line of standard input for "-".
int ShowDates(const std::vector<std::string>& texts, bool asJson) {
  int exitCode = kFine;
  const auto show = [&](const std::string& text) {
    if (!ShowDate(text, asJson, std::cout)) exitCode = kBadFile;
  };
  for (const std::string& text : texts) {
    if (!IsStandard(text)) {
      show(text);
      continue;
    }
    for (std::string line; std::getline(std::cin, line);) {
      if (!line.empty() && line.back() == '\r') line.pop_back();
      show(line);
    }
  }
  return exitCode;
}

int PostFile(PostOptions options) {
  const InputFile file(options.file);
  options.file = file.name();
  return Post(options);
}

/// Runs a verb. An exception is printed and gives the exit code.
template <class Verb>
int Run(Verb verb) {
  try {
    return verb();
  } catch (const Failure& failure) {
    PrintFailure(failure);
    return failure.exitCode;
  } catch (const std::ios::failure&) {
    throw;  // standard output failed, so the program ends
  } catch (const std::exception& error) {
    PrintFailure({kTrouble, std::string("vosmere: error: ") + error.what()});
    return kTrouble;
  }
}

CLI::App* AddCheck(CLI::App& app, std::vector<std::string>& files, CheckOptions& options) {
  CLI::App* const check = app.add_subcommand(
      "check", "Check that documents load, and list what a saved copy would lose or add");
  check->footer(
      std::string(kExitCodes) +
      "\n1 also if a document cannot be saved, or has warnings with --strict. With several "
      "files, the highest code counts.");
  check->add_option("FILE", files, "Documents or folders of stores")->required();
  check->add_flag("--all", options.all, "List every place of a warning, not only the first few");
  check->add_flag("--strict", options.strict, "Exit with 1 if there are warnings");
  CLI::Option* const json = check->add_flag(
      "--json", options.json,
      "Print one line of JSON per file: file, loads, copyLoads, error, line, column, warnings");
  CLI::Option* const sarif =
      check->add_flag("--sarif", options.sarif, "Print a SARIF 2.1.0 log, which editors read")
          ->excludes(json);
  check->add_flag("--quiet", options.quiet, "Print nothing, except why a file cannot be read")
      ->excludes(json, sarif);
  return check;
}

CLI::App* AddDate(CLI::App& app, std::vector<std::string>& dates, bool& asJson) {
  CLI::App* const date =
      app.add_subcommand("date", "Print the times that GetTime and ReadDate read from date texts");
  date->footer("Exit codes: 0 ReadDate reads every text; 1 it does not read one; 2 wrong usage.");
  date->add_option("TEXT", dates, "Texts to read; - reads the lines of standard input")->required();
  date->add_flag("--json", asJson, "Print one line of JSON per text");
  return date;
}

CLI::App* AddDiff(CLI::App& app, std::string& a, std::string& b, bool& asJson) {
  CLI::App* const diff = app.add_subcommand("diff", "Print what differs between two documents");
  diff->footer(
      "Exit codes: 0 they are equal; 1 they differ; 2 wrong usage, or a file cannot be loaded.\n"
      "Items are the same by identity, by address, or by name in the same folder.");
  diff->add_option("A", a, "Document or folder of a store, as it was")->required();
  diff->add_option("B", b, "What it is compared with")->required();
  diff->add_flag("--json", asJson, "Print a JSON array with an object for each item that differs");
  return diff;
}

CLI::App* AddFavorites(CLI::App& app, FavoritesOptions& options) {
  CLI::App* const favorites = app.add_subcommand(
      "favorites", "Print or export a Favorites folder in the order of its menu");
  favorites->footer(kExitCodes);
  favorites->add_option("DIR", options.folder, "The folder (default: the user's own)");
  CLI::Option* const profile =
      favorites
          ->add_option("--profile", options.registry,
                       "Take the order from the NTUSER.DAT of a Windows profile")
          ->type_name("FILE");
  CLI::Option* const wine =
      favorites->add_option("--wine", options.registry, "Take the order from a Wine prefix")
          ->type_name("DIR");
  favorites->add_option("--reg", options.registry, "Take the order from an exported registry file")
      ->type_name("FILE")
      ->excludes(profile, wine);
  profile->excludes(wine);
  CLI::Option* const opml =
      favorites
          ->add_option("--opml", options.opml,
                       "Write an OPML file with the links instead of printing")
          ->type_name("FILE");
  CLI::Option* const rss =
      favorites
          ->add_option("--rss", options.rss, "Write a collection (RSS), which `vosmere show` reads")
          ->type_name("FILE")
          ->excludes(opml);
  favorites->add_option("--html", options.html, "Write a bookmark file, which browsers import")
      ->type_name("FILE")
      ->excludes(opml, rss);
  favorites->add_flag("--json", options.json, "Print the tree and the warnings as JSON")
      ->excludes(opml, rss);
  return favorites;
}

CLI::App* AddMerge(CLI::App& app, MergeOptions& options) {
  CLI::App* const merge = app.add_subcommand(
      "merge", "Make one tree or collection of two that have been changed independently");
  merge->footer(std::string(kExitCodes) +
                "\nConflicts are settled for the newer item, else for OURS, and listed on the "
                "standard error; they do not count.");
  merge->add_option("OURS", options.ours, "Document or folder of a store")->required();
  merge->add_option("THEIRS", options.theirs, "The other document")->required();
  merge
      ->add_option("--base", options.bases,
                   "What both have started from; without it nothing counts as removed. May be "
                   "repeated, the newest first: the first with the base builds of both is used")
      ->allow_extra_args(false)
      ->type_name("FILE");
  CLI::Option* const out =
      merge->add_option("-o,--output", options.out, "Where the result goes; may be OURS")
          ->type_name("FILE");
  merge->add_flag("--dry-run", options.dryRun, "Print what would change in OURS, write nothing")
      ->excludes(out);
  merge->add_flag("--json", options.json, "Print conflicts, warnings and changes as JSON");
  merge->parse_complete_callback([&options] {
    if (!options.dryRun && options.out.empty()) throw CLI::RequiredError("--output");
  });
  return merge;
}

CLI::App* AddImport(CLI::App& app, ImportOptions& options) {
  CLI::App* const import = app.add_subcommand(
      "import", "Read a list, feed or bookmark file of another program, and list the repairs");
  import->footer(std::string("OPML and bookmark files become a tree, RSS a collection. The name of "
                             "OUT says what is written:\n.html a bookmark file, .rss or .xml a "
                             "collection, .opml a tree with its pages.\n") +
                 kExitCodes);
  import->add_option("FILE", options.file, "File to import")->required();
  CLI::Option* const output =
      import
          ->add_option("-o,--output", options.output,
                       "File to write: replaced as a whole or left unchanged")
          ->type_name("OUT");
  import
      ->add_option("--into", options.into,
                   "Add the items to this list instead, each once: OPML, RSS or a bookmark file")
      ->type_name("LIST")
      ->excludes(output);
  import->add_flag("--json", options.json, "Print repairs, conflicts and warnings as JSON");
  import->parse_complete_callback([&options] {
    if (options.output.empty() && options.into.empty())
      throw CLI::RequiredError("--output or --into");
});
return import;
}  // namespace

CLI::App* AddNote(CLI::App& app, NoteOptions& options) {
  CLI::App* const note = app.add_subcommand("note", "Export an item of a document as an HTML page");
  note->footer(kExitCodes);
  note->add_option("IN", options.in, "Document or folder of a store")->required();
  note->add_option("ITEM", options.item,
                   "Name or identity of the item, or its folders and name as in 'News > Daily'")
      ->required();
  note->add_option("OUT", options.out, "HTML file to write")->required();
  note->add_flag("--json", options.json, "Print the place and the identity of the item as JSON");
  return note;
}

CLI::App* AddPost(CLI::App& app, PostOptions& options) {
  CLI::App* const post = app.add_subcommand("post", "Upload a file to a web server as a form");
  post->footer(
      "Exit codes: 0 the server accepted the file; 1 the server rejected it, or the reply is "
      "incomplete; 2 wrong usage, or the file cannot be sent.\n"
      "A request that fails is not sent again. Only a server that redirects it, or asks for a "
      "password, gets it once more.");
  const auto isPair = [](const std::string& field) {
    return field.find('=') == field.npos || field[0] == '=' ? "is not NAME=VALUE" : "";
  };
  post->add_option("HOST", options.host, "Server, as NAME or NAME:PORT")->required();
  post->add_option("PATH", options.path, "Path on the server")->required();
  post->add_option("FILE", options.file, "File to upload")->required();
  post->add_option("--field", options.fields, "Add a field to the form; can be repeated")
      ->type_name("NAME=VALUE")
      ->allow_extra_args(false)
      ->check(isPair);
  CLI::Option* const user =
      post->add_option(
              "--user", options.user,
              "Send this user name and the MD5 digest of a password, which is read from the "
              "terminal or from standard input")
          ->type_name("NAME");
  post->add_option("--login", options.login,
                   "Use this name, and a password that is read in the same way, when the server "
                   "asks for HTTP authentication")
      ->type_name("NAME")
      ->excludes(user);
  post->add_option("--proxy", options.proxy, "Send through this proxy, NAME:PORT")
      ->type_name("PROXY");
  constexpr double kLongest = 86400;
  post->add_option("--connect-limit", options.connectLimit, "Most seconds until it is connected")
      ->type_name("SECONDS")
      ->check(CLI::Range(0.001, kLongest))
      ->capture_default_str();
  post->add_option("--transfer-limit", options.transferLimit,
                   "Most seconds in which nothing arrives or can be sent")
      ->type_name("SECONDS")
      ->check(CLI::Range(0.001, kLongest))
      ->capture_default_str();
  post->add_flag("--secure", options.secure, "Use HTTPS");
  post->add_flag("--clean", options.clean,
                 "Send the file name without its folders, as browsers do");
  CLI::Option* const output =
      post->add_option("--output", options.output,
                       "Write the whole reply to this file as it arrives; - means standard output")
          ->type_name("FILE");
  post->add_option("--reply-limit", options.replyLimit, "Print at most so much of the reply")
      ->type_name("KIB")
      ->capture_default_str();
  post->add_flag("--dry-run", options.dryRun,
                 "Print the request, with the digest masked, and send nothing")
      ->excludes(output);
  post->add_flag("--json", options.json, "Print status and reply as JSON");
  return post;
}

CLI::App* AddShow(CLI::App& app, std::string& in, std::string& page, bool& asJson) {
  CLI::App* const show =
      app.add_subcommand("show", "Print the contents of a document")->footer(kExitCodes);
  show->add_option("FILE", in, "Document or folder of a store")->required();
  CLI::Option* const html =
      show->add_option("--html", page,
                       "Write a page for browsers instead: a tree that folds, with a search field "
                       "and the findings of `vosmere check`")
          ->type_name("OUT");
  show->add_flag("--json", asJson,
                 "Print JSON: each item with its kind and fields, folders with children. Values "
                 "that the document does not have are null; marks are false or 0")
      ->excludes(html);
  return show;
}

CLI::App* AddCopy(CLI::App& app, std::string& in, std::string& out, bool& asJson) {
  CLI::App* const copy =
      app.add_subcommand("copy", "Load a document and save it as a new file that is sure to load")
          ->footer(kExitCodes);
  copy->add_option("IN", in, "Document or folder of a store")->required();
  copy->add_option("OUT", out,
                   "File to write: replaced as a whole or left unchanged; can be IN. With the "
                   "ending .html, bookmarks that browsers import")
      ->required();
  copy->add_flag("--json", asJson, "Print the warnings as JSON");
  return copy;
}

CLI::App* AddLog(CLI::App& app, std::string& in, bool& asJson) {
  CLI::App* const log =
      app.add_subcommand("log", "Print the changes in the log of a store")->footer(kExitCodes);
  log->add_option("STORE", in, "Folder of the store")->required();
  log->add_flag("--json", asJson, "Print one line of JSON per change");
  return log;
}

CLI::App* AddRecover(CLI::App& app, std::string& in, std::uint64_t& checkpoint, bool& asJson) {
  CLI::App* const recover =
      app.add_subcommand("recover",
                         "List the checkpoints of a store, what they hold and whether they load")
          ->footer(kExitCodes);
  recover->add_option("STORE", in, "Folder of the store")->required();
  recover->add_option("--restore", checkpoint, "Make a copy of this checkpoint the newest")
      ->type_name("NUMBER");
  recover->add_flag("--json", asJson, "Print one line of JSON per checkpoint");
  return recover;
}

void SetUp(CLI::App& app) {
  app.set_version_flag("--version", "vosmere " VOSMERE_VERSION_TEXT " (" VOSMERE_PLATFORM ")");
  const std::map<std::string, Colors> colors = {
      {"auto", Colors::kAuto}, {"always", Colors::kAlways}, {"never", Colors::kNever}};
  app.add_option_function<std::string>(
         "--color",
         [colors](const std::string& when) {
           const auto found = colors.find(when);
           if (found == colors.end())
             throw CLI::ValidationError("--color", "is not known: " + when);
           SetColors(found->second);
         },
         "Color messages and differences: always, never, or auto: on a terminal, unless NO_COLOR "
         "is "
         "set")
      ->type_name("WHEN");
  app.add_option_function<std::string>(
         "--generate",
         [&app](const std::string& form) {
           PrintUsage(app, form, std::cout);
           throw CLI::Success();
         },
         "Print the man page (man), or the completion for a shell (bash, zsh, fish)")
      ->check(CLI::IsMember(kUsageForms))
      ->type_name("FORM");
  app.require_subcommand(1);
  app.allow_windows_style_options(false);  // a path may begin with a slash
  app.footer(kExitCodes);
  for (const char* const noise : {"TEXT", "REQUIRED"}) app.get_formatter()->label(noise, "");
}

/// Names what was not expected, and what may have been meant.
void PrintUnknown(const CLI::App& app) {
  const std::vector<CLI::App*> verbs = app.get_subcommands();
  const std::vector<std::string> unknown = app.remaining(true);
  if (unknown.empty()) return;
  const std::string suggestion = Suggestion(app, verbs.empty() ? app : *verbs[0], unknown[0]);
  if (verbs.empty() && unknown[0][0] != '-')
    std::cerr << '\'' << Printable(unknown[0]) << "' is not a subcommand" << suggestion << '\n';
  else if (!suggestion.empty())
    std::cerr << '\'' << Printable(unknown[0]) << "' is not known" << suggestion << '\n';
}

/// Runs the verb that the arguments name. Returns the exit code of the arguments alone.
int Parse(CLI::App& app, const Arguments& arguments) try {
  for (CLI::App* verb : app.get_subcommands([](const CLI::App*) { return true; }))
    verb->fallthrough();  // options of all verbs may come after the verb
  app.parse(Arguments(arguments.rbegin(), arguments.rend()));  // CLI11 expects the reverse order
  return kFine;
} catch (const CLI::ParseError& error) {
  if (error.get_exit_code() != 0) PrintUnknown(app);
  return app.exit(error) == 0 ? kFine : kTrouble;
}

// NOLINTNEXTLINE(readability-function-size): a few lines for each verb, and nothing else.
int Main(const Arguments& arguments) {
  CLI::App app("Show, check, copy and export VosmereBase documents.", "vosmere");
  SetUp(app);
  std::string in, out;
  std::vector<std::string> files;
  bool asJson = false;
  int exitCode = kFine;

  AddShow(app, in, out, asJson)->callback([&] {
    exitCode = Run([&] { return out.empty() ? Show(in, asJson) : ShowAsHtml(in, out); });
  });

  CheckOptions checkOptions;
  AddCheck(app, files, checkOptions)->callback([&] {
    exitCode = Run([&] { return Check(files, checkOptions); });
  });

  AddCopy(app, in, out, asJson)->callback([&] {
    exitCode = Run([&] { return Copy(in, out, asJson); });
  });

  std::vector<std::string> dates;
  AddDate(app, dates, asJson)->callback([&] {
    exitCode = Run([&] { return ShowDates(dates, asJson); });
  });

  AddDiff(app, in, out, asJson)->callback([&] {
    exitCode = Run([&] { return Diff(in, out, asJson); });
  });

  MergeOptions merge;
  AddMerge(app, merge)->callback([&] { exitCode = Run([&] { return Merge(merge); }); });

  FavoritesOptions favorites;
  AddFavorites(app, favorites)->callback([&] {
    exitCode = Run([&] { return Favorites(favorites); });
  });

  ImportOptions import;
  AddImport(app, import)->callback([&] { exitCode = Run([&] { return ImportFile(import); }); });

  NoteOptions note;
  AddNote(app, note)->callback([&] { exitCode = Run([&] { return Note(note); }); });

  AddLog(app, in, asJson)->callback([&] {
    exitCode = Run([&] { return ShowLog(in, asJson, std::cout); });
  });

  std::uint64_t checkpoint = 0;
  AddRecover(app, in, checkpoint, asJson)->callback([&] {
    exitCode = Run([&] { return Recover(in, checkpoint, asJson, std::cout); });
  });

  PostOptions post;
  AddPost(app, post)->callback([&] {
    std::cout.exceptions(std::ios::goodbit);  // the library calls back; no exception may cross it
    exitCode = Run([&] { return PostFile(post); });
    if (exitCode != kTrouble) std::cout.exceptions(std::ios::badbit);
  });

  const int parsed = Parse(app, arguments);
  return std::max(exitCode, parsed);
}

int Program(const Arguments& arguments) try {
  std::cout.exceptions(std::ios::badbit);  // errno holds the reason only right after the failure
  const int exitCode = Main(arguments);
  std::cout.flush();
  return exitCode;
} catch (const std::ios::failure&) {
  const std::string reason = std::generic_category().message(errno);
  std::cerr.tie(nullptr);  // writing to cerr would flush cout, which fails again
  std::cerr << "vosmere: error: the output cannot be written: " << reason << '\n';
  return kTrouble;
}

}  // namespace vosmere::tool
}  // namespace vosmere::tool

int main(int argc, char** argv) {
  return vosmere::tool::RunProgram(argc, argv, vosmere::tool::Program);
}
