#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "platform/FileSystem.h"

namespace tamboro {

/// Tells the record that a key names now from those that it named before. A deleted kit's slot or a deleted sample's
/// id is handed out again, and another card has the same keys: an undo handler belongs to one card and one life of
/// its key and finds nothing else. Lives are numbers that are never used twice; 0 is what the card held when it was
/// first read.
class RecordLives {
 public:
  enum class Kind { kit, wave };
  using Life = std::uint64_t;

  /// The lives of all keys that were renewed since the card was first read.
  struct State {
    std::map<std::int64_t, Life> kits;
    std::map<std::int64_t, Life> waves;

    Life life(Kind kind, std::int64_t key) const;
  };

  /// A card has been read: its keys have the lives that were last saved to it.
  /// `identity` tells it from another card at the same place.
  void openCard(const std::string& identity, const Path& root);
  /// What a card without a serial number is known by has changed with what was saved to it.
  void setIdentity(std::size_t card, const std::string& identity) { cards_.at(card).identity = identity; }
  /// The key's record has gone or a new one has taken it.
  void renew(Kind kind, std::int64_t key);
  /// The state has been written to the card it was taken from.
  void saved(std::size_t card, const State& state);
  /// Writing the state has failed half way: what is on the card under the keys that it would have renewed is unknown.
  void saveFailed(std::size_t card, const State& state);

  std::size_t card() const { return card_; }
  const State& state() const { return now_; }
  Life life(Kind kind, std::int64_t key) const { return now_.life(kind, key); }

 private:
  struct Card {
    std::string identity;
    Path root;
    State onCard;
  };

  std::vector<Card> cards_;
  std::size_t card_ = 0;
  State now_;
  Life last_ = 0;
};

}  // namespace tamboro
