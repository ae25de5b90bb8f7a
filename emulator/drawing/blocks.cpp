// blocks.cpp - finding blocks that insert themselves.
#include "emulator/drawing/blocks.h"

#include <unordered_map>

namespace vorhost {
namespace {

// Block names are compared without regard to ASCII case, as the table does.
std::string Key(std::string_view name) {
  std::string key(name);
  for (char& c : key)
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 32);
  return key;
}

// For each block, the blocks its inserts name, by index in the table.
std::vector<std::vector<size_t>> Children(const std::vector<BlockRecord>& records) {
  std::unordered_map<std::string, size_t> index;
  for (size_t i = 0; i < records.size(); i++) index.emplace(Key(records[i].name), i);
  std::vector<std::vector<size_t>> children(records.size());
  for (size_t i = 0; i < records.size(); i++)
    for (const Entity& e : records[i].entities)
      if (!e.erased && e.type == "INSERT")
        if (auto it = index.find(Key(e.Text(2))); it != index.end()) children[i].push_back(it->second);
  return children;
}

}  // namespace

// A depth-first search kept on a stack of its own, so that a long chain
// of blocks cannot exhaust the call stack.
std::vector<std::string> BlockCycle(const SymbolTable<BlockRecord>& blocks, std::string_view start) {
  const std::vector<BlockRecord>& records = blocks.records();
  std::vector<std::vector<size_t>> children = Children(records);
  enum : char { kNew, kOnPath, kDone };
  std::vector<char> state(records.size(), kNew);
  std::vector<size_t> roots;
  for (size_t i = 0; i < records.size(); i++)
    if (!start.empty() && SameName(records[i].name, start)) roots.push_back(i);
  for (size_t i = 0; i < records.size(); i++) roots.push_back(i);

  for (size_t root : roots) {
    if (state[root] != kNew) continue;
    std::vector<std::pair<size_t, size_t>> path{{root, 0}};  // block, next child to visit
    state[root] = kOnPath;
    while (!path.empty()) {
      auto& [block, next] = path.back();
      if (next == children[block].size()) {
        state[block] = kDone;
        path.pop_back();
        continue;
      }
      size_t child = children[block][next++];
      if (state[child] == kOnPath) {
        std::vector<std::string> cycle;
        size_t from = 0;
        while (path[from].first != child) from++;
        for (size_t k = from; k < path.size(); k++) cycle.push_back(records[path[k].first].name);
        cycle.push_back(records[child].name);
        return cycle;
      }
      if (state[child] == kNew) {
        state[child] = kOnPath;
        path.push_back({child, 0});
      }
    }
  }
  return {};
}

std::string DescribeCycle(const std::vector<std::string>& cycle) {
  if (cycle.empty()) return "";
  std::string text = "block " + cycle[0] + " inserts itself";
  for (size_t k = 1; k + 1 < cycle.size(); k++) text += (k == 1 ? " through " : ", ") + cycle[k];
  return text;
}

}  // namespace vorhost
