#include "TavrinCore/Text/ComputerWords.h"

namespace tavrin {

const ComputerWords& computerWords() {
  return TAVRIN_COMPUTER_WORDS;
}

std::string localSentence(std::string_view sentence, const ComputerWords& words) {
  constexpr std::string_view computer = "{Mac}";
  constexpr std::string_view system = "{macOS}";
  std::string out;
  for (std::size_t at = 0; at < sentence.size();) {
    const std::string_view rest = sentence.substr(at);
    if (rest.starts_with(computer)) {
      out += translation(words.computer);
      at += computer.size();
    } else if (rest.starts_with(system)) {
      out += translation(out.empty() || out.ends_with(". ") ? words.systemFirst : words.system);
      at += system.size();
    } else {
      out += sentence[at++];
    }
  }
  return out;
}

} // namespace tavrin
