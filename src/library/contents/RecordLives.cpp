#include "library/contents/RecordLives.h"

#include <algorithm>

namespace tamboro {

void RecordLives::openCard(const std::string& identity, const Path& root) {
  const auto known = std::find_if(cards_.begin(), cards_.end(),
                                  [&](const Card& card) { return card.identity == identity && card.root == root; });
  card_ = static_cast<std::size_t>(known - cards_.begin());
  if (known == cards_.end()) cards_.push_back({identity, root, {}});
  now_ = cards_[card_].onCard;
}

void RecordLives::renew(Kind kind, std::int64_t key) {
  (kind == Kind::kit ? now_.kits : now_.waves)[key] = ++last_;
}

void RecordLives::saved(std::size_t card, const State& state) {
  cards_.at(card).onCard = state;
}

void RecordLives::saveFailed(std::size_t card, const State& state) {
  State& onCard = cards_.at(card).onCard;
  const auto forget = [this](const auto& written, auto& lives) {
    for (const auto& [key, life] : written) {
      if (const auto known = lives.find(key); known == lives.end() || known->second != life) lives[key] = ++last_;
    }
  };
  forget(state.kits, onCard.kits);
  forget(state.waves, onCard.waves);
}

RecordLives::Life RecordLives::State::life(Kind kind, std::int64_t key) const {
  const auto& lives = kind == Kind::kit ? kits : waves;
  const auto found = lives.find(key);
  return found == lives.end() ? 0 : found->second;
}

}  // namespace tamboro
