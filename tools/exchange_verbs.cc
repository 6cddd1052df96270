// The verbs for two documents, and for what other programs write and read.
#include <iostream>
#include <memory>

#include "tools/date.h"
#include "tools/diff.h"
#include "tools/document_source.h"
#include "tools/favorites.h"
#include "tools/import.h"
#include "tools/merge.h"
#include "tools/post.h"
#include "tools/verbs.h"

namespace vosmere::tool {
namespace {

void AddDiff(CLI::App& app, int& exitCode) {
  const auto files = std::make_shared<Files>();
  CLI::App* const diff = app.add_subcommand("diff", "Print what differs between two documents");
  diff->footer(
      "Exit codes: 0 they are equal; 1 they differ; 2 wrong usage, or a file cannot be loaded.\n"
      "Items are the same by identity, by address, or by name in the same folder.");
  diff->add_option("A", files->in, "Document or folder of a store, as it was")->required();
  diff->add_option("B", files->out, "What it is compared with")->required();
  diff->add_flag("--json", files->json,
                 "Print a JSON array with an object for each item that differs");
  OnRun(*diff, exitCode, [files] { return Diff(files->in, files->out, files->json); });
}

void AddMerge(CLI::App& app, int& exitCode) {
  const auto options = std::make_shared<MergeOptions>();
  CLI::App* const merge = app.add_subcommand(
      "merge", "Make one tree or collection of two that have been changed independently");
  merge->footer(std::string(kExitCodes) +
                "\nConflicts are settled for the newer item, else for OURS, and listed on the "
                "standard error; they do not count.");
  merge->add_option("OURS", options->ours, "Document or folder of a store")->required();
  merge->add_option("THEIRS", options->theirs, "The other document")->required();
  merge
      ->add_option("--base", options->bases,
                   "What both have started from; without it nothing counts as removed. May be "
                   "repeated, the newest first: the first with the base builds of both is used")
      ->allow_extra_args(false)
      ->type_name("FILE");
  CLI::Option* const out =
      merge->add_option("-o,--output", options->out, "Where the result goes; may be OURS")
          ->type_name("FILE");
  merge->add_flag("--dry-run", options->dryRun, "Print what would change in OURS, write nothing")
      ->excludes(out);
  merge->add_flag("--json", options->json, "Print conflicts, warnings and changes as JSON");
  merge->parse_complete_callback([options] {
    if (!options->dryRun && options->out.empty()) throw CLI::RequiredError("--output");
  });
  OnRun(*merge, exitCode, [options] { return Merge(*options); });
}

void AddImport(CLI::App& app, int& exitCode) {
  const auto options = std::make_shared<ImportOptions>();
  CLI::App* const verb = app.add_subcommand(
      "import", "Read a list, feed or bookmark file of another program, and list the repairs");
  verb->footer(std::string("OPML and bookmark files become a tree, RSS a collection. The name of "
                           "OUT says what is written:\n.html a bookmark file, .rss or .xml a "
                           "collection, .opml a tree with its pages.\n") +
               kExitCodes);
  verb->add_option("FILE", options->file, "File to import")->required();
  CLI::Option* const output =
      verb->add_option("-o,--output", options->output,
                       "File to write: replaced as a whole or left unchanged")
          ->type_name("OUT");
  verb->add_option("--into", options->into,
                   "Add the items to this list instead, each once: OPML, RSS or a bookmark file")
      ->type_name("LIST")
      ->excludes(output);
  verb->add_flag("--json", options->json, "Print repairs, conflicts and warnings as JSON");
  verb->parse_complete_callback([options] {
    if (options->output.empty() && options->into.empty())
      throw CLI::RequiredError("--output or --into");
  });
  OnRun(*verb, exitCode, [options] { return ImportFile(*options); });
}

void AddFavorites(CLI::App& app, int& exitCode) {
  const auto options = std::make_shared<FavoritesOptions>();
  CLI::App* const favorites = app.add_subcommand(
      "favorites", "Print or export a Favorites folder in the order of its menu");
  favorites->footer(kExitCodes);
  favorites->add_option("DIR", options->folder, "The folder (default: the user's own)");
  CLI::Option* const profile =
      favorites
          ->add_option("--profile", options->registry,
                       "Take the order from the NTUSER.DAT of a Windows profile")
          ->type_name("FILE");
  CLI::Option* const wine =
      favorites->add_option("--wine", options->registry, "Take the order from a Wine prefix")
          ->type_name("DIR");
  favorites->add_option("--reg", options->registry, "Take the order from an exported registry file")
      ->type_name("FILE")
      ->excludes(profile, wine);
  profile->excludes(wine);
  CLI::Option* const opml =
      favorites
          ->add_option("--opml", options->opml,
                       "Write an OPML file with the links instead of printing")
          ->type_name("FILE");
  CLI::Option* const rss = favorites
                               ->add_option("--rss", options->rss,
                                            "Write a collection (RSS), which `vosmere show` reads")
                               ->type_name("FILE")
                               ->excludes(opml);
  favorites->add_option("--html", options->html, "Write a bookmark file, which browsers import")
      ->type_name("FILE")
      ->excludes(opml, rss);
  favorites->add_flag("--json", options->json, "Print the tree and the warnings as JSON")
      ->excludes(opml, rss);
  OnRun(*favorites, exitCode, [options] { return Favorites(*options); });
}

void AddFormOptions(CLI::App& post, PostOptions& options) {
  const auto isPair = [](const std::string& field) {
    return field.find('=') == field.npos || field[0] == '=' ? "is not NAME=VALUE" : "";
  };
  post.add_option("HOST", options.host, "Server, as NAME or NAME:PORT")->required();
  post.add_option("PATH", options.path, "Path on the server")->required();
  post.add_option("FILE", options.file, "File to upload")->required();
  post.add_option("--field", options.fields, "Add a field to the form; can be repeated")
      ->type_name("NAME=VALUE")
      ->allow_extra_args(false)
      ->check(isPair);
  CLI::Option* const user =
      post.add_option(
              "--user", options.user,
              "Send this user name and the MD5 digest of a password, which is read from the "
              "terminal or from standard input")
          ->type_name("NAME");
  post.add_option("--login", options.login,
                  "Use this name, and a password that is read in the same way, when the server "
                  "asks for HTTP authentication")
      ->type_name("NAME")
      ->excludes(user);
  post.add_flag("--clean", options.clean, "Send the file name without its folders, as browsers do");
}

void AddConnectionOptions(CLI::App& post, PostOptions& options) {
  post.add_option("--proxy", options.proxy, "Send through this proxy, NAME:PORT")
      ->type_name("PROXY");
  constexpr double kLongest = 86400;
  post.add_option("--connect-limit", options.connectLimit, "Most seconds until it is connected")
      ->type_name("SECONDS")
      ->check(CLI::Range(0.001, kLongest))
      ->capture_default_str();
  post.add_option("--transfer-limit", options.transferLimit,
                  "Most seconds in which nothing arrives or can be sent")
      ->type_name("SECONDS")
      ->check(CLI::Range(0.001, kLongest))
      ->capture_default_str();
  post.add_flag("--secure", options.secure, "Use HTTPS");
}

void AddReplyOptions(CLI::App& post, PostOptions& options) {
  CLI::Option* const output =
      post.add_option("--output", options.output,
                      "Write the whole reply to this file as it arrives; - means standard output")
          ->type_name("FILE");
  post.add_option("--reply-limit", options.replyLimit, "Print at most so much of the reply")
      ->type_name("KIB")
      ->capture_default_str();
  post.add_flag("--dry-run", options.dryRun,
                "Print the request, with the digest masked, and send nothing")
      ->excludes(output);
  post.add_flag("--json", options.json, "Print status and reply as JSON");
}

void AddPost(CLI::App& app, int& exitCode) {
  const auto options = std::make_shared<PostOptions>();
  CLI::App* const post = app.add_subcommand("post", "Upload a file to a web server as a form");
  post->footer(
      "Exit codes: 0 the server accepted the file; 1 the server rejected it, or the reply is "
      "incomplete; 2 wrong usage, or the file cannot be sent.\n"
      "A request that fails is not sent again. Only a server that redirects it, or asks for a "
      "password, gets it once more.");
  AddFormOptions(*post, *options);
  AddConnectionOptions(*post, *options);
  AddReplyOptions(*post, *options);
  OnRun(*post, exitCode, [options] {
    const InputFile file(options->file);
    options->file = file.name();
    std::cout.exceptions(std::ios::goodbit);  // the library calls back; no exception may cross it
    return Post(*options);
  });
}

void AddDate(CLI::App& app, int& exitCode) {
  const auto texts = std::make_shared<std::vector<std::string>>();
  const auto json = std::make_shared<bool>(false);
  CLI::App* const date =
      app.add_subcommand("date", "Print the times that GetTime and ReadDate read from date texts");
  date->footer("Exit codes: 0 ReadDate reads every text; 1 it does not read one; 2 wrong usage.");
  date->add_option("TEXT", *texts, "Texts to read; - reads the lines of standard input")
      ->required();
  date->add_flag("--json", *json, "Print one line of JSON per text");
  OnRun(*date, exitCode, [=] { return ShowDates(*texts, *json, std::cout); });
}

}  // namespace

void AddExchangeVerbs(CLI::App& app, int& exitCode) {
  AddDiff(app, exitCode);
  AddMerge(app, exitCode);
  AddImport(app, exitCode);
  AddFavorites(app, exitCode);
  AddPost(app, exitCode);
  AddDate(app, exitCode);
}

}  // namespace vosmere::tool
