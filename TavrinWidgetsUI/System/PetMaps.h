#pragma once

#include <array>
#include <string_view>

namespace tavrin::pets {

/// Rows of pixels, one character each; an animal's palette gives the characters their colours. "."
/// lets through what lies beneath, "E" and "e" are the halves of eyes, which close. Unused rows are
/// empty.
struct PetMap {
  std::array<std::string_view, 10> rows;
};

// clang-format off

// Cat

inline constexpr PetMap catHead{".o.....o.",
                         "ofo...ofo",
                         "ofpoooppo",
                         "offdfdffo",
                         "ofEfdfEfo",
                         "ofefffefo",
                         "olllnlllo",
                         ".ooooooo."};
inline constexpr PetMap catBody{"..ooooooooo",
                         ".offdfdffff",
                         "offfdfdffff",
                         "offfffffffo",
                         "ofllllllffo"};
inline constexpr PetMap catTailA{".oo.",
                          "ofdo",
                          "ofo.",
                          "odo.",
                          ".ofo",
                          "..of"};
inline constexpr PetMap catTailB{"oo..",
                          "odo.",
                          "ofo.",
                          ".odo",
                          ".ofo",
                          "..of"};
inline constexpr PetMap catSit{".offfffo...",
                        ".offfffo...",
                        "ofdlllfdo..",
                        "offlllffooo",
                        "ofolllofdfo",
                        "oooooooooo."};
inline constexpr PetMap catLoaf{"...ooooooo.....",
                         ".oodfdfdffoo...",
                         "offdfdfdfffoo..",
                         "offfffffffffo..",
                         "odfdffffffffo..",
                         ".ooooooooooo..."};

// Dog

inline constexpr PetMap dogHead{"..ooooo..",
                                "oofffffoo",
                                "oddfffddo",
                                "odEfffEdo",
                                "odefffedo",
                                "odflnlfdo",
                                ".oflllfo.",
                                "..oopoo..",
                                "....p...."};
inline constexpr PetMap dogBody{"..ooooooooo",
                         ".offffffccf",
                         "offddfffccf",
                         "offddfffffo",
                         "offlllllffo"};
inline constexpr PetMap dogTailA{"oo..",
                          "ofo.",
                          ".ofo",
                          "..of"};
inline constexpr PetMap dogTailB{"..o.",
                          ".ofo",
                          ".ofo",
                          "..of"};
inline constexpr PetMap dogSit{".occccco...",
                        ".offfffo...",
                        "offlllffo..",
                        "offlllffooo",
                        "ofolllofdfo",
                        "oooooooooo."};
inline constexpr PetMap dogLoaf{"...ooooooo.....",
                         ".ooffffffcoo...",
                         "offddffffcfoo..",
                         "offddfffffffo..",
                         "offffffffllfo..",
                         ".ooooooooooo..."};

// Fox

inline constexpr PetMap foxHead{"oo.....oo",
                         "odo...odo",
                         "ofdo.odfo",
                         "offoooffo",
                         "ofEfffEfo",
                         "ofefffefo",
                         "owwfffwwo",
                         ".owwnwwo.",
                         "...ooo..."};
inline constexpr PetMap foxBody{"..ooooooooo",
                         ".offfffffff",
                         "offffffffff",
                         "offffffffwo",
                         "offfffffwwo"};
inline constexpr PetMap foxTailA{".ooo..",
                          "owfo..",
                          "owwffo",
                          "owwfff",
                          ".owfff",
                          "..oooo"};
inline constexpr PetMap foxTailB{"......",
                          ".oooo.",
                          "owwffo",
                          "owwfff",
                          "owwfff",
                          ".ooooo"};
inline constexpr PetMap foxSit{".offfffo.....",
                        ".offwffo.....",
                        "offwwwffooo..",
                        "offwwwfffffo.",
                        "odowwwodfwwwo",
                        "oooooooooooo."};
inline constexpr PetMap foxLoaf{"...ooooooo.....",
                         ".ooffffffffoo..",
                         "offffffffffffo.",
                         "offffffffffffo.",
                         "owwwwfffffffo..",
                         ".ooooooooooo..."};

// Rabbit

inline constexpr PetMap rabbitHead{"..oo.oo..",
                            ".ofpopfo.",
                            ".ofpopfo.",
                            ".ofpopfo.",
                            ".offfffo.",
                            "ofEfffEfo",
                            "ofefffefo",
                            "oflfnflfo",
                            ".ooooooo."};
inline constexpr PetMap rabbitBody{"...ooooooo.",
                            ".ooffffffff",
                            "offffffffff",
                            "offffffffff",
                            "offfffflllo"};
inline constexpr PetMap rabbitTail{".oo.",
                            "owwo",
                            "owwo",
                            ".oo."};
inline constexpr PetMap rabbitSit{".offfffo..",
                           "offlllffo.",
                           "offlllffoo",
                           "ofolllofww",
                           "offooofffw",
                           "oooooooooo"};
inline constexpr PetMap rabbitLoaf{"....oooooo.....",
                            "..oofffffoo....",
                            ".offfffffffo...",
                            "owffffffffffo..",
                            "owffffffffffo..",
                            ".ooooooooooo..."};

// Turtle

inline constexpr PetMap turtleHead{".oooo.",
                            "offEfo",
                            "offefo",
                            "offffo",
                            "olllo.",
                            ".ooo.."};
inline constexpr PetMap turtleBody{"....oooooo....",
                            "..oosshhssoo..",
                            ".oshhsshhssho.",
                            ".oshhsshhssho.",
                            "ossshhsshhssso",
                            "oddddddddddddo",
                            ".olllllllllloo"};
inline constexpr PetMap turtleTail{"...", "oo.", ".oo"};
inline constexpr PetMap turtleLoaf{"....oooooo....",
                            "..oosshhssoo..",
                            ".oshhsshhssho.",
                            ".oshhsshhssho.",
                            "ossshhsshhssso",
                            "oddddddddddddo",
                            "oofoooooooofoo"};

// Legs, for those who have four of a length

inline constexpr PetMap legsA{"ofodo.ofodo",
                       "ofooo.ofooo",
                       "ooo...ooo.."};
inline constexpr PetMap legsB{"ofodo.ofodo",
                       "ofodo.ofodo",
                       "ooooo.ooooo"};
inline constexpr PetMap legsC{"ofodo.ofodo",
                       "ooodo.ooodo",
                       "..ooo...ooo"};
inline constexpr PetMap turtleLegsA{"ofo...odo....",
                             "ooo...ooo...."};
inline constexpr PetMap turtleLegsB{".ofo.....ofo.",
                             ".ooo.....ooo."};
inline constexpr PetMap rabbitLegsA{"offo...ofo.",
                             "ooooo..ooo.",
                             "..........."};
inline constexpr PetMap rabbitLegsB{"ofo.....ofo",
                             "ofo.....ofo",
                             "oo.......oo"};

inline constexpr PetMap heart{".rr.rr.",
                       "rwrrrrr",
                       "rrrrrrr",
                       ".rrrrr.",
                       "..rrr..",
                       "...r..."};
inline constexpr PetMap snore{"zzzz",
                              "..z.",
                              ".z..",
                              "zzzz"};

// clang-format on

} // namespace tavrin::pets
