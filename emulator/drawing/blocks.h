// blocks.h - block references and what they may cost: a block must never
// insert itself, directly or through other blocks, and drawing one insert
// (its block, the blocks inside that, the cells of a multiple insert) has
// a fixed budget, so that no drawing makes a picture, a save or a pick
// run for ever.
#ifndef VORHOST_DRAWING_BLOCKS_H
#define VORHOST_DRAWING_BLOCKS_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "emulator/drawing/tables.h"

namespace vorhost {

// Blocks inside blocks are expanded this many levels deep at most.
constexpr int kMaxBlockDepth = 16;

// What expanding one insert of model space may cost: each record placed
// and each cell of a multiple insert counts one. What lies past it is
// left out of the insert's outline and picture.
constexpr size_t kInsertBudget = 100000;

// A cycle of blocks that insert one another, as the names along it, the
// first again at the end ({"A", "A"} for a block inserting itself,
// {"A", "B", "A"} through another); empty when there is none. Blocks
// named by inserts but not defined end a path. The search starts at the
// block named start when there is one, so a cycle through it is the one
// found.
std::vector<std::string> BlockCycle(const SymbolTable<BlockRecord>& blocks,
                                    std::string_view start = {});

// "block A inserts itself" or "block A inserts itself through B, C".
std::string DescribeCycle(const std::vector<std::string>& cycle);

// The budget of one insert's expansion, spent as records are placed.
class InsertBudget {
 public:
  // Whether one more thing may be placed; counts it when it may.
  bool Spend() {
    if (left_ == 0) return false;
    left_--;
    return true;
  }
  bool spent() const { return left_ == 0; }
  // Spends n at once when that many are left; false, spending nothing,
  // otherwise.
  bool SpendAll(size_t n) {
    if (n > left_) return false;
    left_ -= n;
    return true;
  }
  size_t left() const { return left_; }

 private:
  size_t left_ = kInsertBudget;
};

}  // namespace vorhost

#endif
