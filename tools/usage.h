// What is made of the command line's definition: the man page, completions, suggestions.
#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace vosmere::tool {

/// Names that PrintUsage knows.
inline const std::vector<std::string> kUsageForms = {"man", "bash", "zsh", "fish"};

/// Prints the man page ("man"), or the completion for a shell.
void PrintUsage(const CLI::App& app, const std::string& form, std::ostream& out);

/// " - did you mean 'show'?", for the verb or option that is nearest to what was typed; empty if
/// none is near. `verb` is where options are searched.
std::string Suggestion(const CLI::App& app, const CLI::App& verb, const std::string& typed);

}  // namespace vosmere::tool
