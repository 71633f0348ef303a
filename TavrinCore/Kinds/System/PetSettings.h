#pragma once

#include "TavrinCore/Base/Coding.h"

namespace tavrin {

enum class PetSpecies { cat, dog, fox, rabbit, turtle };

template <> struct EnumNames<PetSpecies> {
  static constexpr auto names =
      std::to_array<std::pair<PetSpecies, std::string_view>>({{PetSpecies::cat, "cat"},
                                                              {PetSpecies::dog, "dog"},
                                                              {PetSpecies::fox, "fox"},
                                                              {PetSpecies::rabbit, "rabbit"},
                                                              {PetSpecies::turtle, "turtle"}});
};

template <> struct EnumTitles<PetSpecies> {
  static constexpr auto titles = std::to_array<std::string_view>(
      {marked("Cat"), marked("Dog"), marked("Fox"), marked("Rabbit"), marked("Turtle")});
};

struct PetSettings {
  static constexpr std::string_view kindKey = "pet";

  PetSpecies species = PetSpecies::cat;
  /// Runs when the processor does.
  bool followsProcessorLoad = false;
  bool sleepsAtNight = true;

  static constexpr auto fields() {
    return std::tuple{optional("species", &PetSettings::species)
                          .titled("Animal")
                          .helped("Who lives on the tile."),
                      optional("followsProcessorLoad", &PetSettings::followsProcessorLoad)
                          .titled("Follow the processor")
                          .helped("It runs when the processor is busy."),
                      optional("sleepsAtNight", &PetSettings::sleepsAtNight)
                          .titled("Sleep at night")
                          .helped("It lies down late in the evening.")};
  }
  bool operator==(const PetSettings&) const = default;
};

} // namespace tavrin
