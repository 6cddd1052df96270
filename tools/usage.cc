// What is made of the command line's definition: the man page, completions, suggestions.
#include "tools/usage.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <numeric>

#include "vosmere/base/version.h"

namespace vosmere::tool {
namespace {

constexpr char kName[] = "vosmere";

std::vector<const CLI::App*> VerbsOf(const CLI::App& app) {
  return app.get_subcommands([](const CLI::App*) { return true; });
}

std::vector<std::string> NamesOf(const CLI::Option& option) {
  std::vector<std::string> names;
  for (const std::string& name : option.get_snames()) names.push_back('-' + name);
  for (const std::string& name : option.get_lnames()) names.push_back("--" + name);
  return names;
}

bool TakesValue(const CLI::Option& option) {
  return option.get_items_expected_max() > 0;
}

std::string ValueOf(const CLI::Option& option) {
  std::string type = option.get_type_name();
  type.resize(std::min(type.size(), type.find(':')));  // what follows are the possible values
  return type == "TEXT" || type.empty() ? "VALUE" : type;
}

/// Calls `use` with each option (or, if `positional`, each argument) of a verb.
template <class Use>
void ForEachOption(const CLI::App& verb, bool positional, Use use) {
  for (const CLI::Option* option : verb.get_options())
    if (option->get_positional() == positional) use(*option);
}

/// The text with a backslash before each of `special`.
std::string Escaped(const std::string& text, std::string_view special) {
  std::string escaped;
  for (const char c : text) {
    if (special.find(c) != special.npos) escaped += '\\';
    escaped += c;
  }
  return escaped;
}

/// A text of the man page: neither backslashes nor points and quotes at the start of a line mean
/// anything to roff.
std::string Roff(const std::string& text) {
  std::string roff;
  for (const char c : text) {
    if ((c == '.' || c == '\'') && (roff.empty() || roff.back() == '\n')) roff += "\\&";
    if (c == '\n')
      roff += "\n.br\n";
    else if (c == '\\' || c == '-')
      roff += c == '-' ? "\\-" : "\\e";
    else
      roff += c;
  }
  return roff;
}

void PrintManOption(const CLI::Option& option, std::ostream& out) {
  out << ".TP\n";
  if (option.get_positional()) out << "\\fI" << Roff(option.get_name(true)) << "\\fR";
  const char* separator = "";
  for (const std::string& name : NamesOf(option)) {
    out << separator << "\\fB" << Roff(name) << "\\fR";
    separator = ", ";
  }
  if (!option.get_positional() && TakesValue(option))
    out << " \\fI" << Roff(ValueOf(option)) << "\\fR";
  out << '\n' << Roff(option.get_description()) << '\n';
}

void PrintManVerb(const CLI::App& app, const CLI::App& verb, std::ostream& out) {
  out << ".SS \"" << kName << ' ' << verb.get_name() << " [OPTION...]";
  ForEachOption(verb, true, [&](const CLI::Option& argument) {
    const std::string name =
        argument.get_name(true) + (argument.get_expected_max() > 1 ? "..." : "");
    out << ' ' << (argument.get_required() ? name : '[' + name + ']');
  });
  out << "\"\n" << Roff(verb.get_description()) << ".\n";
  for (const bool positional : {true, false})
    ForEachOption(verb, positional, [&](const CLI::Option& option) {
      if (!option.check_lname("help")) PrintManOption(option, out);
    });
  std::string footer = verb.get_footer();
  if (footer.starts_with(app.get_footer())) footer.erase(0, app.get_footer().size());
  if (footer.starts_with('\n')) footer.erase(0, 1);
  if (!footer.empty()) out << ".PP\n" << Roff(footer) << '\n';
}

void PrintMan(const CLI::App& app, std::ostream& out) {
  out << ".TH VOSMERE 1 \"\" \"VosmereBase " VOSMERE_VERSION_TEXT "\" \"User Commands\"\n"
      << ".SH NAME\nvosmere \\- " << Roff(app.get_description()) << "\n.SH SYNOPSIS\n\\fB" << kName
      << "\\fR [\\fIOPTION\\fR...] \\fICOMMAND\\fR [\\fIARGUMENT\\fR...]\n.SH OPTIONS\n";
  ForEachOption(app, false, [&](const CLI::Option& option) { PrintManOption(option, out); });
  out << ".SH COMMANDS\n";
  for (const CLI::App* verb : VerbsOf(app)) PrintManVerb(app, *verb, out);
  out << ".SH EXIT STATUS\n" << Roff(app.get_footer()) << '\n';
}

std::string OptionNames(const CLI::App& verb) {
  std::string names;
  ForEachOption(verb, false, [&](const CLI::Option& option) {
    for (const std::string& name : NamesOf(option)) names += ' ' + name;
  });
  return names;
}

void PrintBash(const CLI::App& app, std::ostream& out) {
  out << "_vosmere() {\n"
         "  local word=${COMP_WORDS[COMP_CWORD]} options='"
      << OptionNames(app) << "' verbs='";
  for (const CLI::App* verb : VerbsOf(app)) out << ' ' << verb->get_name();
  out << "'\n"
         "  if ((COMP_CWORD == 1)); then\n"
         "    COMPREPLY=($(compgen -W \"$verbs $options\" -- \"$word\"))\n"
         "    return\n"
         "  fi\n"
         "  case ${COMP_WORDS[1]} in\n";
  for (const CLI::App* verb : VerbsOf(app))
    out << "    " << verb->get_name() << ") options+='" << OptionNames(*verb) << "' ;;\n";
  out << "  esac\n"
         "  if [[ $word == -* ]]; then\n"
         "    COMPREPLY=($(compgen -W \"$options\" -- \"$word\"))\n"
         "  else\n"
         "    mapfile -t COMPREPLY < <(compgen -f -- \"$word\")\n"
         "  fi\n"
         "}\n"
         "complete -o filenames -F _vosmere vosmere\n";
}

void PrintZsh(const CLI::App& app, std::ostream& out) {
  const auto quoted = [](const std::string& text) {
    std::string safe = Escaped(text, "[]:\\");
    for (std::size_t at = 0; (at = safe.find('\'', at)) != safe.npos; at += 4)
      safe.replace(at, 1, "'\\''");
    std::replace(safe.begin(), safe.end(), '\n', ' ');
    return safe;
  };
  const auto print = [&](const CLI::App& verb) {
    ForEachOption(verb, false, [&](const CLI::Option& option) {
      for (const std::string& name : NamesOf(option))
        out << " \\\n      '*" << name << '[' << quoted(option.get_description()) << ']'
            << (TakesValue(option) ? ':' + quoted(ValueOf(option)) + ":_files'" : "'");
    });
  };
  out << "#compdef vosmere\n_vosmere() {\n  local -a verbs=(\n";
  for (const CLI::App* verb : VerbsOf(app))
    out << "    '" << verb->get_name() << ':' << quoted(verb->get_description()) << "'\n";
  out << "  )\n  if ((CURRENT == 2)); then\n    _describe command verbs\n    return\n  fi\n"
         "  shift words\n  ((CURRENT--))\n  case $words[1] in\n";
  for (const CLI::App* verb : VerbsOf(app)) {
    out << "    " << verb->get_name() << ") _arguments";
    print(*verb);
    print(app);
    out << " \\\n      '*:file:_files' ;;\n";
  }
  out << "  esac\n}\n_vosmere \"$@\"\n";
}

void PrintFish(const CLI::App& app, std::ostream& out) {
  const auto described = [](const std::string& text) {
    return " -d '" + Escaped(text, "\\'") + "'\n";
  };
  const auto print = [&](const CLI::App& verb, const std::string& condition) {
    ForEachOption(verb, false, [&](const CLI::Option& option) {
      out << "complete -c vosmere" << condition;
      for (const std::string& name : option.get_snames()) out << " -s " << name;
      for (const std::string& name : option.get_lnames()) out << " -l " << name;
      out << (TakesValue(option) ? " -r" : "") << described(option.get_description());
    });
  };
  print(app, "");
  for (const CLI::App* verb : VerbsOf(app)) {
    out << "complete -c vosmere -n __fish_use_subcommand -f -a " << verb->get_name()
        << described(verb->get_description());
    print(*verb, " -n '__fish_seen_subcommand_from " + verb->get_name() + '\'');
  }
}

/// The number of letters to insert, remove, replace or swap with the next to get from one to the
/// other.
std::size_t Distance(const std::string& a, const std::string& b) {
  std::vector<std::size_t> before, last, row(b.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 1; i <= a.size(); ++i) {
    before = std::exchange(last, row);
    row[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + (a[i - 1] != b[j - 1])});
      if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
        row[j] = std::min(row[j], before[j - 2] + 1);
    }
  }
  return row.back();
}

}  // namespace

void PrintUsage(const CLI::App& app, const std::string& form, std::ostream& out) {
  using Print = void (*)(const CLI::App&, std::ostream&);
  constexpr Print kPrint[] = {PrintMan, PrintBash, PrintZsh, PrintFish};
  kPrint[std::find(kUsageForms.begin(), kUsageForms.end(), form) - kUsageForms.begin()](app, out);
}

std::string Suggestion(const CLI::App& app, const CLI::App& verb, const std::string& typed) {
  std::string nearest;
  std::size_t least = std::min<std::size_t>(3, typed.size() / 2 + 1);
  const auto consider = [&](const std::string& name) {
    if (const std::size_t distance = Distance(typed, name); distance < least) {
      least = distance;
      nearest = name;
    }
  };
  constexpr std::size_t kLongest = 64;
  if (typed.size() > kLongest) return {};
  if (typed[0] != '-')
    for (const CLI::App* known : VerbsOf(app)) consider(known->get_name());
  for (const CLI::App* searched : {&verb, &app})
    ForEachOption(*searched, false, [&](const CLI::Option& option) {
      for (const std::string& name : NamesOf(option)) consider(name);
    });
  return nearest.empty() ? "" : "; did you mean '" + nearest + "'?";
}

}  // namespace vosmere::tool
