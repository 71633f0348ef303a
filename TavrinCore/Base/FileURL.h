#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tavrin {

/// "file:///tmp/a%20b" of an absolute path, byte for byte, whatever encoding its name has.
std::string fileURL(std::string_view path);
/// `text` with its percent escapes undone; no value where one is none, or stands for a zero byte.
std::optional<std::string> unescapedPath(std::string_view text);
/// The bytes of the path a file address on this computer leads to; no value for any other text and
/// for escapes that `unescapedPath` refuses.
std::optional<std::string> pathOfFileURL(std::string_view url);
/// The files of a "text/uri-list", in order; its other lines are left out.
std::vector<std::filesystem::path> pathsOfURIList(std::string_view list);

/// A path as settings hold it: itself, or its file address where its name is not UTF-8.
std::string pathText(const std::filesystem::path& path);
/// Back again; also what users write: "~/Downloads". No value for what is no absolute path.
std::optional<std::filesystem::path> pathOfText(std::string_view text,
                                                const std::filesystem::path& home = {});

} // namespace tavrin
