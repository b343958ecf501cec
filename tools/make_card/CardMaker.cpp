#include "make_card/CardMaker.h"

#include <algorithm>
#include <utility>
#include <variant>
#include <vector>

#include "card/SpdDocument.h"
#include "make_card/Random.h"
#include "make_card/SampleTable.h"
#include "model/FXTypeDef.h"
#include "model/Keys.h"
#include "model/PadSetting.h"
#include "model/Wave.h"
#include "model/WaveListIndex.h"

namespace tamboro {
namespace {

constexpr int padCount = 15;
constexpr int fxParamCount = 20;  // the file has room for more parameters than any effect uses
constexpr std::int64_t tinyFrames = 64;

struct Sample {
  std::int64_t bank = 0;
  std::int64_t fileNumber = 0;
  const SampleRecipe* recipe = nullptr;
  int tag = 0;
  std::string name;
  std::string path;  // below WAVE/DATA
};

std::string padded(std::int64_t number, int width) {
  std::string digits = std::to_string(number);
  const auto wanted = static_cast<std::size_t>(width);
  return digits.size() < wanted ? std::string(wanted - digits.size(), '0') + digits : digits;
}

// The table's entry, numbered from its second round on: in the name's cells and in the audio file's stem.
Sample sampleAt(int position, int tags) {
  const auto count = static_cast<int>(sampleTable.size());
  const SampleRecipe& recipe = sampleTable.at(static_cast<std::size_t>(position % count));
  Sample sample;
  sample.recipe = &recipe;
  sample.tag = std::clamp(int{recipe.tag}, 0, std::max(0, tags - 1));
  sample.name = recipe.name;
  sample.path = recipe.audioFile;
  if (position >= count) {
    const std::string number = std::to_string(position / count + 1);
    sample.name = sample.name.substr(0, 12 - number.size() - 1) + " " + number;
    sample.path.insert(sample.path.rfind('.'), "_" + number);
  }
  return sample;
}

// Half of the samples are the factory's as long as its two banks hold them; the user's lie in two banks at least.
std::vector<Sample> layOutSamples(const CardOptions& options) {
  const int factory = std::min(options.samples / 2, static_cast<int>(firstUserBank * wavesPerBank));
  std::vector<Sample> samples;
  const auto fill = [&](int count, std::int64_t firstBank) {
    const std::int64_t banks = std::max<std::int64_t>(2, (count + wavesPerBank - 1) / wavesPerBank);
    const std::int64_t perBank = (count + banks - 1) / banks;
    for (int i = 0; i < count; ++i) {
      Sample sample = sampleAt(static_cast<int>(samples.size()), options.tags);
      sample.bank = firstBank + i / perBank;
      sample.fileNumber = i % perBank;
      sample.path = padded(sample.bank, 2) + "/" + sample.path;
      samples.push_back(std::move(sample));
    }
  };
  fill(factory, 0);
  fill(options.samples - factory, firstUserBank);
  return samples;
}

void writeSample(SpdText& text, const Sample& sample, std::int64_t frames) {
  const Tone& tone = sample.recipe->tone;
  text.open(elements::waveRoot);
  text.name(elements::waveName, sample.name);
  text.leaf(elements::waveTag, sample.tag);
  text.leaf(elements::waveTempo, static_cast<std::int64_t>(tone.tempo * 10));
  text.leaf(elements::waveBeat, 4);
  if (tone.sound == Sound::loop) {
    text.leaf(elements::waveMeasure, 1);
  }
  text.leaf(elements::waveStart, 0);
  text.leaf(elements::waveEnd, frames);
  text.leaf("Gain", 100);
  text.open("SrcInfo");
  text.leaf("Ch", tone.stereo ? 2 : 1);
  text.selfClosing("Memo");
  text.close();
  text.leaf(elements::wavePath, sample.path);
  text.close();
}

std::int64_t drawParam(const FXParamDef& param, Random& random) {
  if (const auto* options = std::get_if<FXParamDef::Options>(&param.kind)) {
    return random.between(0, static_cast<std::int64_t>(options->texts.size()) - 1);
  }
  if (const auto* raw = std::get_if<FXParamDef::Raw>(&param.kind)) {
    return random.between(raw->lower, raw->upper);
  }
  const auto& range = std::get<FXParamDef::Range>(param.kind);
  return random.between(range.lower, range.upper);
}

void writeFx(SpdText& text, int unit, Random& random) {
  const std::int64_t type = random.between(1, static_cast<std::int64_t>(fxTypes.size()) - 1);
  const auto params = fxTypes.at(static_cast<std::size_t>(type)).params;
  text.leaf(elements::fxSwitch(unit), random.oneIn(2) ? 1 : 0);
  text.leaf(elements::fxType(unit), type);
  for (int position = 0; position < fxParamCount; ++position) {
    const auto n = static_cast<std::size_t>(position);
    text.leaf(elements::fxParam(unit, position), n < params.size() ? drawParam(params[n], random) : 0);
  }
}

WaveId drawFrom(const std::vector<WaveId>& ids, Random& random) {
  return ids.empty() ? noWave : ids.at(static_cast<std::size_t>(random.between(0, std::ssize(ids) - 1)));
}

// Which sound a pad is likely to have: nine pads, four trigger inputs, two footswitches.
constexpr std::array<TagPosition, padCount> padTags{kick, snare, hat,   hat, tom, clap, percussion, bass,
                                                    loop, kick,  snare, tom, tom, hat,  voice};

class KitWriter {
 public:
  KitWriter(const CardOptions& options, const std::vector<Sample>& samples)
      : options_(options), byTag_(tagNames.size()) {
    for (const Sample& sample : samples) {
      all_.push_back(waveId(sample.bank, sample.fileNumber));
      byTag_.at(sample.recipe->tag).push_back(all_.back());
    }
  }

  std::string write(int position) const {
    Random random(options_.seed * 1000003U + static_cast<std::uint64_t>(position));
    const KitRecipe& recipe = kitTable.at(static_cast<std::size_t>(position) % kitTable.size());
    const auto round = static_cast<std::size_t>(position) / kitTable.size();
    SpdText text(options_.lineEnds);
    text.open("KitPrm");
    text.leaf(elements::kitLevel, random.between(70, 100));
    text.leaf(elements::kitTempo, recipe.tempo);
    text.name(elements::kitName, round == 0 ? std::string(recipe.name) : "Kit " + std::to_string(position + 1));
    text.name(elements::kitSubName, recipe.subtitle);
    text.leaf("ClickSw", 0);
    writeFx(text, 1, random);
    writeFx(text, 2, random);
    text.open("FsCtrl");
    text.leaf("Func", random.between(0, 7));
    text.leaf("Depth", random.between(0, 100));
    text.close();
    for (int pad = 0; pad < padCount; ++pad) {
      writePad(text, position, pad, random);
    }
    text.selfClosing("KitMemo");
    text.close();
    return text.text();
  }

 private:
  // The first pads of neighbouring kits differ; some pads of some kits stay empty.
  WaveId soundOf(int kit, int pad, Random& random) const {
    const std::vector<WaveId>& fitting = byTag_.at(padTags.at(static_cast<std::size_t>(pad)));
    if (pad == 0) {
      return fitting.empty() ? drawFrom(all_, random) : fitting.at(static_cast<std::size_t>(kit) % fitting.size());
    }
    if (fitting.empty() || (kit % 3 == 2 && random.oneIn(4))) {
      return noWave;
    }
    return drawFrom(fitting, random);
  }

  void writePad(SpdText& text, int kit, int pad, Random& random) const {
    const bool layered = random.oneIn(4);
    text.open(elements::pad);
    text.leaf(padSetting("padSound").leaf, soundOf(kit, pad, random));
    text.leaf(padSetting("subSound").leaf, layered ? drawFrom(all_, random) : noWave);
    text.leaf(padSetting("padVolume").leaf, random.between(60, 100));
    text.leaf(padSetting("padPan").leaf, random.between(8, 22));
    text.leaf(padSetting("subVolume").leaf, layered ? 80 : 100);
    text.leaf(padSetting("subPan").leaf, 15);
    text.leaf("PadLinkGrp", 0);
    text.leaf(padSetting("note").leaf, 60 + pad);
    text.leaf(padSetting("muteGroup").leaf, padTags.at(static_cast<std::size_t>(pad)) == hat ? 1 : 0);
    text.leaf(padSetting("poly").leaf, random.oneIn(3) ? 0 : 1);
    text.leaf(padSetting("triggerType").leaf, random.oneIn(5) ? 1 : 0);
    text.leaf(padSetting("output").leaf, random.between(0, 4));
    text.leaf(padSetting("midiChannel").leaf, random.oneIn(4) ? random.between(1, 16) : -1);
    text.leaf(padSetting("loop").leaf, padTags.at(static_cast<std::size_t>(pad)) == loop ? 1 : 0);
    text.leaf(padSetting("tempoSync").leaf, random.oneIn(6) ? 1 : 0);
    text.leaf(padSetting("dynamics").leaf, random.oneIn(3) ? 0 : 1);
    text.leaf(padSetting("reverse").leaf, random.oneIn(12) ? 1 : 0);
    text.leaf("FadeTime", random.between(0, 9));
    text.close();
  }

  const CardOptions& options_;
  std::vector<std::vector<WaveId>> byTag_;
  std::vector<WaveId> all_;
};

std::string tagListText(const CardOptions& options) {
  SpdText text(options.lineEnds);
  text.open("TagList");
  for (int tag = 0; tag < options.tags; ++tag) {
    const auto position = static_cast<std::size_t>(tag);
    text.open(elements::tag);
    text.name(elements::tagName,
              position < tagNames.size() ? std::string(tagNames.at(position)) : "Tag " + std::to_string(tag + 1));
    text.close();
  }
  text.close();
  return text.text();
}

// The instrument's lists hold what the program's own hold, with the line ends of its other files.
std::string asInstrument(SpdDocument index, LineEnds lineEnds) {
  if (lineEnds != LineEnds::lf) {
    index.lineSeparator = LineSeparator::crlf;
    index.trailingBytes = "\r\n";
  }
  return index.serialize();
}

void writeSystem(const CardOptions& options, const std::vector<Wave>& waves, const CardSink& sink) {
  sink("SYSTEM/tag_list.spd", tagListText(options));
  WaveListIndexes lists = buildWaveListIndexes(waves, options.tags);
  sink("SYSTEM/wavelist_name.spd", asInstrument(std::move(lists.byName), options.lineEnds));
  sink("SYSTEM/wavelist_tagnum.spd", asInstrument(std::move(lists.byTagNumber), options.lineEnds));
  sink("SYSTEM/wavelist_tagname.spd", asInstrument(std::move(lists.byTagName), options.lineEnds));
  SpdText setup(options.lineEnds);
  setup.open("SetupPrm");
  setup.leaf("LcdContrast", 8);
  setup.leaf("ClickLevel", 64);
  setup.selfClosing("LastKit");
  setup.close();
  sink("SYSTEM/setup.spd", setup.text());
  using namespace std::string_view_literals;
  sink("card.inf", "DEMO\0\1\2\3\xFF\xFE not for any program"sv);
}

}  // namespace

void makeCard(const CardOptions& options, const CardSink& sink) {
  const std::vector<Sample> samples = layOutSamples(options);
  std::vector<Wave> waves;
  waves.reserve(samples.size());
  Random seeds(options.seed);
  for (const Sample& sample : samples) {
    const Tone& tone = sample.recipe->tone;
    const std::int64_t frames = options.audio == Audio::full ? frameCount(tone) : tinyFrames;
    SpdText text(options.lineEnds);
    writeSample(text, sample, frames);
    sink("WAVE/PRM/" + padded(sample.bank, 2) + "/" + padded(sample.fileNumber, 2) + ".spd", text.text());
    const Random noise(seeds.next());
    if (options.audio != Audio::none) {
      sink("WAVE/DATA/" + sample.path, makeWav(tone, frames, noise));
    }
    waves.push_back(
        Wave{.bank = sample.bank, .fileNumber = sample.fileNumber, .node = SpdDocument::parse(text.text()).root});
  }
  const KitWriter kits(options, samples);
  const int firstSlot = options.kits < 1000 ? 1 : 0;
  for (int position = 0; position < options.kits; ++position) {
    sink("KIT/kit" + padded(firstSlot + position, 3) + ".spd", kits.write(position));
  }
  writeSystem(options, waves, sink);
}

}  // namespace tamboro
