#include "library/store/CardModel.h"

#include <algorithm>

namespace tamboro::test {
namespace {

std::string digits(int number, std::size_t width) {
  std::string text = std::to_string(number);
  return std::string(width - std::min(width, text.size()), '0') + text;
}
std::string kitFile(int slot) {
  return "kit" + digits(slot, 3) + ".spd";
}
std::string bankOf(int id) {
  return digits(id / 100, 2) + "/";
}
std::string parameterFile(int id) {
  return "WAVE/PRM/" + bankOf(id) + digits(id % 100, 2) + ".spd";
}
std::string lower(std::string text) {
  for (char& c : text)
    c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
  return text;
}
std::string lastOf(const std::string& path) {
  return path.substr(path.rfind('/') + 1);
}

std::set<std::int64_t> keysOf(const auto& records) {
  std::set<std::int64_t> keys;
  for (const auto& [key, record] : records)
    keys.insert(key);
  return keys;
}

Element newWave(const std::string& name, int tag, const std::string& path) {
  Element node{{}, "WvPrm", Element::Kind::container, {}, {}, {}};
  node.setCells("Nm", 12, name);
  node.set("Tag", tag);
  for (const auto& [leaf, value] : {std::pair("Tempo", 1200), {"Beat", 4}, {"Measure", 0}, {"Start", 0}, {"End", 0}})
    node.set(leaf, value);
  node.set("Path", path);
  return node;
}

void forEachPad(const Element& kit, const auto& use) {
  for (int i = 0; const Element* pad = kit.nth("PadPrm", i); ++i)
    use(*pad);
}

}  // namespace

CardModel::CardModel(const Tree& card, const Tree& sources) : sources_(sources) {
  load(card);
}

std::set<std::int64_t> CardModel::slots() const {
  return keysOf(now_.kits);
}
std::set<std::int64_t> CardModel::waveIds() const {
  return keysOf(now_.waves);
}
std::set<std::int64_t> CardModel::pendingIds() const {
  RecordMap pending = now_.waves;
  std::erase_if(pending, [](const auto& wave) { return !wave.second.isPending; });
  return keysOf(pending);
}

bool CardModel::hasUnsavedChanges() const {
  const auto isDirty = [](const auto& record) { return record.second.isDirty; };
  return std::ranges::any_of(now_.kits, isDirty) || std::ranges::any_of(now_.waves, isDirty) || now_.tagsAreDirty ||
         !deletions_.empty() || !kitDeletions_.empty();
}

void CardModel::edit(RecordMap Records::*records, int key, const Change& change) {
  const auto found = (now_.*records).find(key);
  if (found == (now_.*records).end()) return;
  const Record before = found->second;
  change(found->second.node);
  if (found->second == before) return;
  found->second.isDirty = true;
  registerUndo([=, this] { restore(records, key, before); });
}

void CardModel::restore(RecordMap Records::*records, int key, Record snapshot) {
  const auto found = (now_.*records).find(key);
  if (found == (now_.*records).end() || found->second.life != snapshot.life) return;
  const Record before = found->second;
  snapshot.isPending = before.isPending;
  snapshot.audio = before.audio;
  if (snapshot == before) return;
  snapshot.isDirty = true;
  found->second = snapshot;
  registerUndo([=, this] { restore(records, key, before); });
}

void CardModel::editPad(int slot, int pad, const Change& change) {
  const auto kit = now_.kits.find(slot);
  Element* node = kit == now_.kits.end() ? nullptr : kit->second.node.nth("PadPrm", pad);
  if (node == nullptr) return;
  const Element before = *node;
  change(*node);
  if (*node == before) return;
  kit->second.isDirty = true;
  registerUndo([=, this, life = kit->second.life] { restorePad(slot, pad, life, before); });
}

void CardModel::restorePad(int slot, int pad, int life, const Element& snapshot) {
  const auto kit = now_.kits.find(slot);
  if (kit == now_.kits.end() || kit->second.life != life) return;
  editPad(slot, pad, [&](Element& node) { node = snapshot; });
}

void CardModel::setTagName(int tag, const std::string& name) {
  Element* node = now_.tags.nth("TagPrm", tag);
  if (node == nullptr) return;
  const Element before = *node;
  node->setCells("Nm", 12, name);
  if (*node == before) return;
  now_.tagsAreDirty = true;
  registerUndo([=, this] { setTagName(tag, before.cells("Nm")); });
}

void CardModel::registerUndo(std::function<void()> handler) {
  if (collecting_ == nullptr) redo_.clear();
  (collecting_ != nullptr ? *collecting_ : open_).push_back(std::move(handler));
}

void CardModel::endTurn() {
  if (!open_.empty()) undo_.push_back(std::move(open_));
  open_.clear();
}

void CardModel::run(std::vector<Step>& from, std::vector<Step>& to) {
  endTurn();
  if (from.empty()) return;
  Step step = from.back();
  from.pop_back();
  Step inverse;
  collecting_ = &inverse;
  for (auto handler = step.rbegin(); handler != step.rend(); ++handler)
    (*handler)();
  collecting_ = nullptr;
  if (!inverse.empty()) to.push_back(inverse);
}

int CardModel::createKit(int source, bool blank) {
  if (!now_.kits.contains(source)) return -1;
  int slot = 0;
  while (now_.kits.contains(slot))
    ++slot;
  Record kit{++last_, now_.kits.at(source).node, true, false, {}, {}};
  kit.node.setCells("Nm", 8, blank ? "" : kit.node.cells("Nm") + " Copy");
  if (blank) {
    kit.node.setCells("SubNm", 16, "");
    for (int i = 0; Element* pad = kit.node.nth("PadPrm", i); ++i) {
      pad->set("Wv", -1);
      pad->set("SubWv", -1);
    }
  }
  now_.kits[slot] = kit;
  return slot;
}

void CardModel::deleteKit(int slot) {
  if (now_.kits.erase(slot) != 0) kitDeletions_[slot] = ++last_;
}

void CardModel::copyPads(int slot) {
  if (!now_.kits.contains(slot)) return;
  copied_.clear();
  forEachPad(now_.kits.at(slot).node, [&](const Element& pad) { copied_.push_back(pad); });
}

void CardModel::pastePads(int slot) {
  const auto kit = now_.kits.find(slot);
  if (kit == now_.kits.end()) return;
  for (std::size_t i = 0; i < copied_.size(); ++i) {
    Element* pad = kit->second.node.nth("PadPrm", static_cast<int>(i));
    if (pad == nullptr || *pad == copied_[i]) continue;
    *pad = copied_[i];
    kit->second.isDirty = true;
  }
}

/// Relative to WAVE/DATA.
std::string CardModel::audioOf(int id, const Record& wave) {
  const Element* path = wave.node.nth("Path", 0);
  return path != nullptr ? path->text : bankOf(id) + wave.node.cells("Nm") + ".wav";
}

std::string CardModel::freeName(int bank, std::string wanted) const {
  for (char& c : wanted)
    if (c == ':' || c == '?') c = '_';
  std::set<std::string> taken;
  for (const auto& [id, wave] : now_.waves)
    if (id / 100 == bank) taken.insert(lower(lastOf(audioOf(id, wave))));
  const std::string folder = "WAVE/DATA/" + digits(bank, 2) + "/";
  for (const auto& [path, file] : files_)
    if (path.starts_with(folder)) taken.insert(lower(lastOf(path)));
  for (const std::string& staged : held_)
    taken.insert(lower(lastOf(staged)));
  const std::size_t point = std::min(wanted.rfind('.'), wanted.size());
  std::string name = wanted;
  for (int i = 1; taken.contains(lower(name)); ++i)
    name = wanted.substr(0, point) + "_" + digits(i, 2) + wanted.substr(point);
  return name;
}

void CardModel::importWave(const std::string& source, const std::string& name, int tag) {
  imports_.push_back({source, {}, sources_.at(lastOf(source)), name, tag, loads_, {}});
  if (imports_.size() == 1) startNextImport();
}

void CardModel::duplicateWave(int id) {
  const auto found = now_.waves.find(id);
  if (found == now_.waves.end()) return;
  const Record original = found->second;
  const std::string audio = audioOf(id, original);
  Import import{
      "WAVE/DATA/" + audio,
      {},
      {},
      original.node.cells("Nm") + " Copy",
      original.node.number("Tag", 0),
      loads_,
      [this, original](int copy) {
        editWave(copy, [&](Element& node) {
          for (const auto& [leaf, fallback] : {std::pair("Tempo", 1200), {"Beat", 4}, {"Start", 0}, {"End", 0}})
            node.set(leaf, original.node.number(leaf, fallback));
        });
      }};
  if (original.isPending) {
    import.staged = audio;
    import.content = original.audio;
    held_.insert(audio);
  }
  imports_.push_back(import);
  if (imports_.size() == 1) startNextImport();
}

void CardModel::startNextImport() {
  const auto drop = [this] {
    if (const auto held = held_.find(imports_.front().staged); held != held_.end()) held_.erase(held);
    imports_.erase(imports_.begin());
  };
  while (!imports_.empty() && imports_.front().load != loads_)
    drop();
  if (imports_.empty()) return;
  int id = 200;
  while (now_.waves.contains(id))
    ++id;
  const std::string path = bankOf(id) + freeName(id / 100, lastOf(imports_.front().source));
  auto content = std::make_shared<std::optional<std::string>>();
  jobs.start(
      [this, content] {
        const Import& import = imports_.front();
        if (!import.source.starts_with("WAVE/") || !import.staged.empty()) {
          *content = import.content;
        } else if (const auto file = files_.find(import.source); file != files_.end()) {
          *content = file->second.bytes;
        }
      },
      [this, id, path, content, drop] {
        const Import import = imports_.front();
        if (*content && import.load == loads_) {
          now_.waves[id] = {++last_, newWave(import.name, import.tag, path), true, true, **content, "\n"};
          if (import.done) import.done(id);
        }
        drop();
        startNextImport();
      });
}

void CardModel::deleteWave(int id) {
  const auto found = now_.waves.find(id);
  if (found == now_.waves.end() || id < 200) return;
  if (!found->second.isPending || begun_.contains(found->second.life)) {
    deletions_.insert({++last_, {id, found->second}});
  }
  now_.waves.erase(found);
}

void CardModel::save() {
  if (running_) {
    saveWaits_ = true;
  } else {
    startSave();
  }
}

void CardModel::startSave() {
  running_ = std::make_shared<Save>(Save{now_, deletions_, kitDeletions_});
  std::vector<std::string> staged;
  for (const auto& [id, wave] : now_.waves) {
    if (!wave.isPending) continue;
    begun_.insert(wave.life);
    staged.push_back(audioOf(id, wave));
  }
  held_.insert(staged.begin(), staged.end());
  saveJob_ = jobs.start(
      [this, save = running_] {
        save->isWritten = !readOnly;
        if (save->isWritten) write(*save);
      },
      [this, staged] {
        for (const std::string& name : staged)
          held_.erase(held_.find(name));
        if (running_->isWritten) apply(*running_);
        running_.reset();
        if (std::exchange(saveWaits_, false) && hasUnsavedChanges()) startSave();
      });
}

void CardModel::write(const Save& save) {
  std::set<std::string> inUse;
  for (const auto& [id, wave] : save.records.waves)
    inUse.insert(lower(audioOf(id, wave)));
  for (const auto& [number, deleted] : save.deletions) {
    files_.erase(parameterFile(deleted.id));
    const std::string audio = audioOf(deleted.id, deleted.record);
    if (!inUse.contains(lower(audio))) files_.erase("WAVE/DATA/" + audio);
  }
  for (const auto& [slot, number] : save.kitDeletions)
    files_.erase("KIT/" + kitFile(slot));
  for (const auto& [id, wave] : save.records.waves) {
    if (wave.isPending) files_["WAVE/DATA/" + audioOf(id, wave)] = {wave.audio, {}, {}};
    if (wave.isDirty) files_[parameterFile(id)] = {{}, wave.node, wave.trailing};
  }
  for (const auto& [slot, kit] : save.records.kits)
    if (kit.isDirty) files_["KIT/" + kitFile(slot)] = {{}, kit.node, kit.trailing};
  if (save.records.tagsAreDirty) files_["SYSTEM/tag_list.spd"] = {{}, save.records.tags, save.records.tagsTrailing};
  writeIndexes(save.records);
}

void CardModel::writeIndexes(const Records& records) {
  std::vector<std::pair<std::string, int>> byName, byNumber;
  for (const auto& [id, wave] : records.waves) {
    byName.emplace_back(lower(wave.node.cells("Nm")), id);
    byNumber.emplace_back("", id);
  }
  std::sort(byName.begin(), byName.end());
  const auto tagOf = [&](int id) { return records.waves.at(id).node.number("Tag", 0); };
  const auto put = [&](const std::string& file, const std::string& root, const auto& order, bool byTag) {
    std::string text = "<" + root + ">\n";
    const int tags = byTag ? records.tags.count("TagPrm") : 1;
    for (int tag = 0; tag < tags; ++tag) {
      if (byTag) text += "\t<WvList>\n";
      for (const auto& [name, id] : order) {
        if (byTag && tagOf(id) != tag) continue;
        text += (byTag ? "\t\t<Wv>" : "\t<Wv>") + std::to_string(id) + "</Wv>\n";
      }
      if (byTag) text += "\t</WvList>\n";
    }
    files_["SYSTEM/" + file] = {text + "</" + root + ">\n", {}, {}};
  };
  put("wavelist_name.spd", "WvListSortbyName", byName, false);
  put("wavelist_tagnum.spd", "WvListSortbyNum_Tag", byNumber, true);
  put("wavelist_tagname.spd", "WvListSortbyName_Tag", byName, true);
}

void CardModel::apply(const Save& save) {
  std::erase_if(deletions_, [&](const auto& deletion) { return save.deletions.contains(deletion.first); });
  std::erase_if(kitDeletions_, [&](const auto& deletion) {
    const auto saved = save.kitDeletions.find(deletion.first);
    return saved != save.kitDeletions.end() && saved->second == deletion.second;
  });
  const auto clean = [](RecordMap& records, const RecordMap& saved, std::map<int, int>& savedLives) {
    savedLives.clear();
    for (const auto& [key, record] : saved) {
      savedLives[key] = record.life;
      const auto now = records.find(key);
      if (!record.isDirty || now == records.end() || now->second.life != record.life) continue;
      if (now->second == record) now->second.isDirty = false;
      now->second.isPending = false;
    }
  };
  clean(now_.kits, save.records.kits, savedKitLives_);
  clean(now_.waves, save.records.waves, savedWaveLives_);
  if (save.records.tagsAreDirty && now_.tags == save.records.tags) now_.tagsAreDirty = false;
}

void CardModel::exportKit(int slot, const std::function<void(const ModelTree*)>& check) {
  const auto found = now_.kits.find(slot);
  if (found == now_.kits.end()) return;
  RecordMap used;
  std::vector<std::string> staged;
  forEachPad(found->second.node, [&](const Element& pad) {
    for (const char* leaf : {"Wv", "SubWv"}) {
      const auto wave = now_.waves.find(pad.number(leaf, -1));
      if (wave != now_.waves.end() && used.insert(*wave).second && wave->second.isPending)
        staged.push_back(audioOf(wave->first, wave->second));
    }
  });
  held_.insert(staged.begin(), staged.end());
  auto expected = std::make_shared<std::optional<ModelTree>>();
  jobs.start(
      [this, used, slot, kit = found->second, expected] {
        ModelTree tree{{kitFile(slot), {{}, kit.node, kit.trailing}}};
        for (const auto& [id, wave] : used) {
          tree[parameterFile(id)] = {{}, wave.node, wave.trailing};
          const std::string audio = audioOf(id, wave);
          const auto source = files_.find("WAVE/DATA/" + audio);
          if (!wave.isPending && source == files_.end()) return;
          tree["WAVE/DATA/" + bankOf(id) + lastOf(audio)] = {
              wave.isPending ? wave.audio : source->second.bytes, {}, {}};
        }
        *expected = tree;
      },
      [this, staged, expected, check] {
        for (const std::string& name : staged)
          held_.erase(held_.find(name));
        check(*expected ? &**expected : nullptr);
      });
}

void CardModel::waitForSave() {
  while (running_)
    jobs.waitFor(saveJob_);
}

void CardModel::load(const Tree& card) {
  ++loads_;
  now_ = {};
  deletions_.clear();
  kitDeletions_.clear();
  files_.clear();
  const auto lifeOf = [](const std::map<int, int>& lives, int key) { return lives.contains(key) ? lives.at(key) : 0; };
  const auto record = [](const ModelFile& file, int life) {
    return Record{life, file.tree, false, false, {}, file.trailing};
  };
  for (const auto& [path, bytes] : card) {
    files_[path] = {bytes, {}, {}};
    if (!path.ends_with(".spd")) continue;
    if (path.starts_with("KIT/kit")) {
      const int slot = std::stoi(path.substr(7));
      now_.kits[slot] = record(readElements(bytes), lifeOf(savedKitLives_, slot));
    } else if (path.starts_with("WAVE/PRM/")) {
      const int id = std::stoi(path.substr(9, 2)) * 100 + std::stoi(path.substr(12));
      now_.waves[id] = record(readElements(bytes), lifeOf(savedWaveLives_, id));
    } else if (path == "SYSTEM/tag_list.spd") {
      const ModelFile tags = readElements(bytes);
      now_.tags = tags.tree;
      now_.tagsTrailing = tags.trailing;
    }
  }
}

}  // namespace tamboro::test
