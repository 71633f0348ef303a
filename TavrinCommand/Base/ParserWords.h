#pragma once

#include <string>

namespace CLI {
class App;
class ParseError;
} // namespace CLI

namespace tavrin {

/// Puts the words that the command line's library adds to a help into the user's language: in
/// `app` and all its subcommands, so once these are there.
void translateHelp(CLI::App& app);

/// What the library has to say of words that it could not take, in the user's language.
std::string parserComplaint(const CLI::ParseError& error);

} // namespace tavrin
