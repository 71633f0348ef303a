#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace tavrin {

/// Has texts come in the user's language (TavrinCore/Text/Texts.h), where there is a catalogue of
/// it: "share/locale/<language>/LC_MESSAGES/tavrin.mo" of the folder that the program is installed
/// or was built in, "Resources/locale/…" in a bundle. The file is mapped and stays so. First thing
/// in `main`; does nothing for English.
void loadTexts();

/// The languages that the environment asks for, best first, in gettext's order: TAVRIN_LANGUAGE;
/// where LC_ALL, LC_MESSAGES or LANG names a language at all, those of LANGUAGE, then that one.
/// Each is followed by what it is a variant of: "de_AT" by "de".
std::vector<std::string> wantedLanguages();

/// The catalogue for the first of `languages` that has one in a folder above `program`; empty for
/// English, and for none.
struct TextsFile {
  std::filesystem::path path;
  std::string language;
};
TextsFile findTexts(const std::filesystem::path& program,
                    const std::vector<std::string>& languages);

} // namespace tavrin
