# For Homebrew, which takes formulae that are in no tap from developers alone:
#   HOMEBREW_DEVELOPER=1 brew install --build-from-source --formula Packaging/macOS/tavrin.rb
class Tavrin < Formula
  desc "Live widgets in the Dock"
  homepage "https://quellby.dev/tavrin"
  url "file://#{File.expand_path("../..", __dir__)}", using: :git
  version "1.0.0"

  depends_on "cmake" => :build
  depends_on "cli11" => :build
  depends_on "gettext" => :build
  depends_on "ninja" => :build
  depends_on "pkgconf" => :build
  depends_on "expat"
  depends_on "fmt"
  depends_on "fontconfig"
  depends_on "freetype"
  depends_on "harfbuzz"
  depends_on "cctz"
  depends_on "icu4c"
  depends_on macos: :sonoma
  depends_on "openssl@3"
  depends_on "qt"
  depends_on "simdjson"

  def install
    prefixes = ["expat", "icu4c", "openssl@3"].map { |name| Formula[name].opt_prefix }
    system "cmake", "-S", ".", "-B", "build", "-G", "Ninja", "-DTAVRIN_TESTS=OFF",
           "-DTAVRIN_BENCHMARKS=OFF", "-DTAVRIN_TOOLS=OFF", "-DTAVRIN_WERROR=OFF",
           "-DCMAKE_PREFIX_PATH=#{prefixes.join(";")}", *std_cmake_args
    system "cmake", "--build", "build"
    system "cmake", "--install", "build"
  end

  test do
    system bin/"tavrin", "--help"
  end
end
