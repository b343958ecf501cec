#include <charconv>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>

#include "make_card/CardMaker.h"

namespace {

constexpr const char* usage =
    "usage: make_card DEST [options]\n"
    "Makes a demo card in DEST/Roland/SPD-SX. DEST must be missing or empty.\n"
    "  --kits N           kits, 0 to 1000 (12)\n"
    "  --samples N        samples, 0 to 10000 (44)\n"
    "  --tags N           tags, 0 to 1000 (16)\n"
    "  --seed S           another card for each number (1)\n"
    "  --audio            audio also for more than 200 samples, then tiny\n"
    "  --no-audio         no audio files\n"
    "  --line-ends KIND   crlf, lf or mixed (crlf)\n"
    "  --flat             the card's folders directly in DEST\n";

constexpr int samplesWithFullAudio = 200;

struct UsageError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

struct Request {
  std::filesystem::path destination;
  tamboro::CardOptions options;
  std::optional<bool> audio;
  bool flat = false;
};

template<typename Number>
Number number(std::string_view option, std::string_view text, Number upper) {
  Number value{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size() || value < 0 || value > upper) {
    throw UsageError(std::string(option) + " takes a number from 0 to " + std::to_string(upper));
  }
  return value;
}

tamboro::LineEnds lineEnds(std::string_view text) {
  if (text == "crlf") return tamboro::LineEnds::crlf;
  if (text == "lf") return tamboro::LineEnds::lf;
  if (text == "mixed") return tamboro::LineEnds::mixed;
  throw UsageError("--line-ends takes crlf, lf or mixed");
}

bool takeFlag(Request& request, std::string_view option) {
  if (option == "--audio" || option == "--no-audio") {
    request.audio = option == "--audio";
  } else if (option == "--flat") {
    request.flat = true;
  } else {
    return false;
  }
  return true;
}

void takeValue(Request& request, std::string_view option, std::string_view value) {
  if (option == "--kits") {
    request.options.kits = number(option, value, 1000);
  } else if (option == "--samples") {
    request.options.samples = number(option, value, 10000);
  } else if (option == "--tags") {
    request.options.tags = number(option, value, 1000);
  } else if (option == "--seed") {
    request.options.seed = number(option, value, UINT64_MAX);
  } else if (option == "--line-ends") {
    request.options.lineEnds = lineEnds(value);
  } else {
    throw UsageError("unknown option " + std::string(option));
  }
}

Request readArguments(std::span<char*> arguments) {
  Request request;
  for (std::size_t i = 1; i < arguments.size(); ++i) {
    const std::string_view argument = arguments[i];
    if (!argument.starts_with("--")) {
      if (!request.destination.empty()) throw UsageError("more than one DEST");
      request.destination = argument;
    } else if (!takeFlag(request, argument)) {
      takeValue(request, argument, ++i < arguments.size() ? arguments[i] : "");
    }
  }
  if (request.destination.empty()) throw UsageError("no DEST");
  const bool large = request.options.samples > samplesWithFullAudio;
  if (!request.audio.value_or(!large)) {
    request.options.audio = tamboro::Audio::none;
  } else if (large) {
    request.options.audio = tamboro::Audio::tiny;
  }
  return request;
}

void writeFile(const std::filesystem::path& file, std::string_view bytes) {
  std::ofstream out(file, std::ios::binary | std::ios::trunc);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  out.close();
  if (!out) throw std::filesystem::filesystem_error("cannot write", file, std::make_error_code(std::errc::io_error));
}

void writeCard(const Request& request) {
  if (std::filesystem::exists(request.destination) && !std::filesystem::is_empty(request.destination)) {
    throw std::runtime_error(request.destination.string() + " exists and is not empty");
  }
  const std::filesystem::path root = request.flat ? request.destination : request.destination / "Roland" / "SPD-SX";
  for (const char* folder : {"KIT", "WAVE/PRM", "WAVE/DATA", "SYSTEM"}) {
    std::filesystem::create_directories(root / folder);
  }
  std::filesystem::path lastFolder;
  tamboro::makeCard(request.options, [&](const std::string& path, std::string_view bytes) {
    const std::filesystem::path file = root / path;
    if (file.parent_path() != lastFolder) {
      lastFolder = file.parent_path();
      std::filesystem::create_directories(lastFolder);
    }
    writeFile(file, bytes);
  });
}

}  // namespace

int main(int argc, char** argv) try {
  writeCard(readArguments(std::span(argv, static_cast<std::size_t>(argc))));
  return 0;
} catch (const UsageError& error) {
  std::fprintf(stderr, "make_card: %s\n%s", error.what(), usage);
  return 2;
} catch (const std::exception& error) {
  std::fprintf(stderr, "make_card: %s\n", error.what());
  return 1;
}
