#include "model/Elements.h"

namespace tamboro::elements {

std::string fxParam(int unit, int position) {
  return (unit == 1 ? "Fx1Prm" : "Fx2Prm") + std::to_string(position);
}

}  // namespace tamboro::elements
