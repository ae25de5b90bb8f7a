// dcl_files_test.cpp - the module's dialog files: every dialog and every tile the module
// drives, with the kind it needs, and the properties of lists and radio keys it relies on.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <fstream>
#include <functional>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "emulator/core/encoding.h"
#include "emulator/dcl/dcl_tree.h"
#include "emulator/core/text.h"

namespace vorhost::dcl {
namespace {

// The module's dialog files sit in dcl/ beside the host's resources/.
const std::string kDclDir = std::string(VORMIS_FILES) + "/";

bool ReadBytes(const std::string& path, std::string* out) { return ReadWholeFile(path, out); }

bool LoadFile(const std::string& name, Library* library, std::string* err) {
  Loader loader = [](const std::string& file, std::string* contents, std::string* where) {
    std::string dir = file == kBaseFileName ? std::string(VORHOST_RESOURCES) + "/" : kDclDir;
    std::string path = dir + file;
    *where = file;
    return ReadBytes(path, contents);
  };
  return library->Load(name, loader, err);
}

// What the module needs of a tile.
enum class Need {
  kText,       // text: set_tile replaces what it shows
  kEdit,       // edit_box
  kToggle,     // toggle
  kButton,     // button (accept, cancel and help included)
  kList,       // list_box with one row chosen at a time
  kMultiList,  // list_box on which several rows may be chosen
  kRadio,      // a radio cluster: its value is the key of its button that is on
};

struct Row {
  const char* file;
  const char* dialog;
  std::string key;
  Need need;
};

const char kVormis[] = "VORMIS.DCL";
const char kBlk[] = "BLK.DCL";

// The radio clusters ra, rb, ... of a dialog.
std::vector<std::string> Clusters(int count) {
  std::vector<std::string> keys;
  for (int i = 0; i < count; ++i) keys.push_back(std::string("r") + static_cast<char>('a' + i));
  return keys;
}

std::vector<Row> Rows() {
  std::vector<Row> rows = {
      {kVormis, "VOR_ELINE_0", "eline", Need::kList},
      {kVormis, "VOR_ELINE_0", "filename", Need::kText},
      {kVormis, "VOR_ELINE_0", "search", Need::kToggle},
      {kVormis, "VOR_ELINE_0", "code", Need::kText},
      {kVormis, "VOR_ELINE_0", "dimline", Need::kToggle},
      {kVormis, "VOR_ELINE_0", "dimlinegap", Need::kEdit},
      {kVormis, "VOR_ELINE_0", "editfile", Need::kButton},
      {kVormis, "VOR_ELINE_0", "add", Need::kButton},
      {kVormis, "VOR_ELINE_0", "editline", Need::kButton},
      {kVormis, "VOR_ELINE_0", "del", Need::kButton},
      {kVormis, "VOR_ELINE_0", "help", Need::kButton},
      {kVormis, "VOR_ELINE_0", "edit_code", Need::kButton},
      {kVormis, "VOR_ELINE_0", "loadline", Need::kButton},
      {kVormis, "VOR_ELINE_0", "changeline", Need::kButton},
      {kVormis, "VOR_ELINE_0", "dimoldline", Need::kButton},
      {kVormis, "VOR_ELINE_0", "accept", Need::kButton},
      {kVormis, "VOR_ELINE_0", "cancel", Need::kButton},

      {kVormis, "VOR_ELINE_1", "e1", Need::kEdit},
      {kVormis, "VOR_ELINE_1", "e2", Need::kEdit},
      {kVormis, "VOR_ELINE_1", "e3", Need::kEdit},
      {kVormis, "VOR_ELINE_1", "t1", Need::kText},
      {kVormis, "VOR_ELINE_1", "t2", Need::kText},
      {kVormis, "VOR_ELINE_1", "t3", Need::kText},
      {kVormis, "VOR_ELINE_1", "t4", Need::kText},
      {kVormis, "VOR_ELINE_1", "b1", Need::kButton},
      {kVormis, "VOR_ELINE_1", "b2", Need::kButton},
      {kVormis, "VOR_ELINE_1", "b3", Need::kButton},
      {kVormis, "VOR_ELINE_1", "b4", Need::kButton},
      {kVormis, "VOR_ELINE_1", "accept", Need::kButton},
      {kVormis, "VOR_ELINE_1", "cancel", Need::kButton},

      {kVormis, "VOR_ELINE_2", "codelist", Need::kList},
      {kVormis, "VOR_ELINE_2", "codeedit", Need::kEdit},
      {kVormis, "VOR_ELINE_2", "accept", Need::kButton},
      {kVormis, "VOR_ELINE_2", "cancel", Need::kButton},

      {kVormis, "VOR_ELINE_CABLE", "edit", Need::kEdit},
      {kVormis, "VOR_ELINE_CABLE", "help", Need::kButton},
      {kVormis, "VOR_ELINE_CABLE", "accept", Need::kButton},
      {kVormis, "VOR_ELINE_CABLE", "cancel", Need::kButton},

      {kVormis, "VOR_SLINE_CABLE", "edit", Need::kEdit},
      {kVormis, "VOR_SLINE_CABLE", "help", Need::kButton},
      {kVormis, "VOR_SLINE_CABLE", "accept", Need::kButton},
      {kVormis, "VOR_SLINE_CABLE", "cancel", Need::kButton},

      {kVormis, "VOR_PLINE_CABLE", "edit", Need::kEdit},
      {kVormis, "VOR_PLINE_CABLE", "pipe", Need::kEdit},
      {kVormis, "VOR_PLINE_CABLE", "help", Need::kButton},
      {kVormis, "VOR_PLINE_CABLE", "accept", Need::kButton},
      {kVormis, "VOR_PLINE_CABLE", "cancel", Need::kButton},

      {kVormis, "VOR_SLINE_CABLE_1", "accept", Need::kButton},
      {kVormis, "VOR_SLINE_CABLE_1", "cancel", Need::kButton},

      {kVormis, "VOR_LAY_SET", "current_layer", Need::kText},
      {kVormis, "VOR_LAY_SET", "layer", Need::kList},
      {kVormis, "VOR_LAY_SET", "accept", Need::kButton},
      {kVormis, "VOR_LAY_SET", "cancel", Need::kButton},

      {kVormis, "NUMBER_TOOL", "type", Need::kText},
      {kVormis, "NUMBER_TOOL", "edit", Need::kEdit},
      {kVormis, "NUMBER_TOOL", "0", Need::kButton},
      {kVormis, "NUMBER_TOOL", "1", Need::kButton},
      {kVormis, "NUMBER_TOOL", "2", Need::kButton},
      {kVormis, "NUMBER_TOOL", "3", Need::kButton},
      {kVormis, "NUMBER_TOOL", "4", Need::kButton},
      {kVormis, "NUMBER_TOOL", "5", Need::kButton},
      {kVormis, "NUMBER_TOOL", "6", Need::kButton},
      {kVormis, "NUMBER_TOOL", "7", Need::kButton},
      {kVormis, "NUMBER_TOOL", "8", Need::kButton},
      {kVormis, "NUMBER_TOOL", "9", Need::kButton},
      {kVormis, "NUMBER_TOOL", ".", Need::kButton},
      {kVormis, "NUMBER_TOOL", "sign", Need::kButton},
      {kVormis, "NUMBER_TOOL", "backspace", Need::kButton},
      {kVormis, "NUMBER_TOOL", "clear", Need::kButton},
      {kVormis, "NUMBER_TOOL", "2p", Need::kButton},
      {kVormis, "NUMBER_TOOL", "entity", Need::kButton},
      {kVormis, "NUMBER_TOOL", "accept", Need::kButton},
      {kVormis, "NUMBER_TOOL", "cancel", Need::kButton},

      {kBlk, "FILE_CON", "current_path", Need::kText},
      {kBlk, "FILE_CON", "type", Need::kEdit},
      {kBlk, "FILE_CON", "path", Need::kList},
      {kBlk, "FILE_CON", "file", Need::kMultiList},
      {kBlk, "FILE_CON", "all", Need::kButton},
      {kBlk, "FILE_CON", "none", Need::kButton},
      {kBlk, "FILE_CON", "edit", Need::kButton},
      {kBlk, "FILE_CON", "help", Need::kButton},
      {kBlk, "FILE_CON", "accept", Need::kButton},
      {kBlk, "FILE_CON", "cancel", Need::kButton},
  };
  const std::pair<const char*, int> kClusterCounts[] = {
      {"VOR_ELINE_CABLE", 17}, {"VOR_SLINE_CABLE", 17}, {"VOR_PLINE_CABLE", 8},
      {"VOR_SLINE_CABLE_1", 4}};
  for (const auto& [dialog, count] : kClusterCounts) {
    for (const std::string& key : Clusters(count)) {
      rows.push_back({kVormis, dialog, key, Need::kRadio});
    }
  }
  return rows;
}

const char* NeedName(Need need) {
  switch (need) {
    case Need::kText: return "text";
    case Need::kEdit: return "edit_box";
    case Need::kToggle: return "toggle";
    case Need::kButton: return "button";
    case Need::kList: return "list_box";
    case Need::kMultiList: return "list_box with multiple_select";
    case Need::kRadio: return "radio cluster";
  }
  return "?";
}

bool Meets(const Tile& tile, Need need) {
  switch (need) {
    case Need::kText: return tile.kind == TileKind::kText;
    case Need::kEdit: return tile.kind == TileKind::kEditBox;
    case Need::kToggle: return tile.kind == TileKind::kToggle;
    case Need::kButton: return tile.kind == TileKind::kButton;
    case Need::kList: return tile.kind == TileKind::kListBox && !tile.IsTrue("multiple_select");
    case Need::kMultiList:
      return tile.kind == TileKind::kListBox && tile.IsTrue("multiple_select");
    case Need::kRadio: return IsRadioCluster(tile.kind);
  }
  return false;
}

void Walk(const Tile& tile, const std::function<void(const Tile&, const Tile*)>& visit,
          const Tile* parent = nullptr) {
  visit(tile, parent);
  for (const Tile& child : tile.children) Walk(child, visit, &tile);
}

class DclFilesTest : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    for (const char* file : {kVormis, kBlk}) {
      std::string err;
      ASSERT_TRUE(LoadFile(file, &Libraries()[file], &err)) << err;
    }
  }
  static std::map<std::string, Library>& Libraries() {
    static std::map<std::string, Library> libraries;
    return libraries;
  }
  static Tile Dialog(const std::string& file, const std::string& name) {
    Tile tile;
    std::string err;
    EXPECT_TRUE(Libraries()[file].Dialog(name, &tile, &err)) << err;
    return tile;
  }
};

TEST_F(DclFilesTest, EveryTileTheModuleDrivesHasItsKind) {
  for (const Row& row : Rows()) {
    Tile dialog = Dialog(row.file, row.dialog);
    const Tile* tile = dialog.Find(row.key);
    if (!tile) {
      ADD_FAILURE() << row.dialog << " has no tile \"" << row.key << "\"";
      continue;
    }
    EXPECT_TRUE(Meets(*tile, row.need))
        << row.dialog << " \"" << row.key << "\" is a " << KindName(tile->kind) << ", needs "
        << NeedName(row.need);
  }
}

TEST_F(DclFilesTest, EachFileHoldsItsDialogsOnly) {
  std::map<std::string, std::set<std::string>> wanted;
  for (const Row& row : Rows()) wanted[row.file].insert(row.dialog);
  for (const auto& [file, dialogs] : wanted) {
    std::vector<std::string> names = Libraries()[file].DialogNames();
    EXPECT_EQ(dialogs, std::set<std::string>(names.begin(), names.end())) << file;
  }
}

// set_tile, mode_tile and action_tile reach the first tile of a key: a key
// used twice leaves the second tile dead. In the cable dialogs the module
// also switches a button off by its key, whichever cluster holds it.
TEST_F(DclFilesTest, KeysAreUniqueInEachDialog) {
  std::map<std::string, std::string> files;
  for (const Row& row : Rows()) files[row.dialog] = row.file;
  for (const auto& [dialog, file] : files) {
    std::map<std::string, int> seen;
    Walk(Dialog(file, dialog), [&](const Tile& tile, const Tile*) {
      if (!tile.Key().empty()) seen[tile.Key()]++;
    });
    for (const auto& [key, count] : seen) EXPECT_EQ(1, count) << dialog << " key " << key;
  }
}

// The module binds its one cluster action to ra, rb, ... only: a cluster it
// does not know of would hold buttons that do nothing, and a radio button
// must sit in one of its clusters.
TEST_F(DclFilesTest, CableDialogsHaveExactlyTheirClusters) {
  std::map<std::string, std::set<std::string>> wanted;
  for (const Row& row : Rows()) {
    if (row.need == Need::kRadio) wanted[row.dialog].insert(row.key);
  }
  for (const auto& [dialog, clusters] : wanted) {
    std::set<std::string> found;
    Walk(Dialog(kVormis, dialog), [&](const Tile& tile, const Tile* parent) {
      if (IsRadioCluster(tile.kind)) {
        found.insert(tile.Key());
        EXPECT_FALSE(tile.children.empty()) << dialog << " cluster " << tile.Key() << " is empty";
      }
      if (tile.kind == TileKind::kRadioButton) {
        EXPECT_TRUE(parent && clusters.count(parent->Key()))
            << dialog << " button " << tile.Key() << " is outside the module's clusters";
        EXPECT_FALSE(tile.Key().empty()) << dialog << " has a radio button without a key";
      }
    });
    EXPECT_EQ(clusters, found) << dialog;
  }
}

// The radio keys of a cable dialog (all clusters).
std::vector<std::string> RadioKeys(const Tile& dialog) {
  std::vector<std::string> keys;
  Walk(dialog, [&](const Tile& tile, const Tile*) {
    if (tile.kind == TileKind::kRadioButton) keys.push_back(tile.Key());
  });
  return keys;
}

bool StartsWith(const std::string& s, const char* prefix) { return s.rfind(prefix, 0) == 0; }

// What a button key turns into: the label rules of the family read its first
// letters, and the key goes into a list of "(key count)" groups.
TEST_F(DclFilesTest, RadioKeysFollowTheLabelRules) {
  auto well_formed = [](const std::string& dialog, const std::string& key) {
    EXPECT_FALSE(key.empty()) << dialog;
    EXPECT_EQ(std::string::npos, key.find_first_of(" \t()_")) << dialog << " key " << key;
  };
  auto upper = [](const std::string& dialog, const std::string& key) {
    // The module upper-cases ELINE and SLINE lists: a lower-case key would
    // no longer find its own group.
    std::string up = key;
    for (char& c : up) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    EXPECT_EQ(up, key) << dialog;
  };
  auto conduit = [](const std::string& key) {
    return (StartsWith(key, "PVC") || StartsWith(key, "EMT") || StartsWith(key, "GIP")) &&
           key.size() > 3;
  };

  for (const std::string& key : RadioKeys(Dialog(kVormis, "VOR_ELINE_CABLE"))) {
    well_formed("VOR_ELINE_CABLE", key);
    upper("VOR_ELINE_CABLE", key);
    bool wire = key.size() > 1 && (key[0] == 'S' || (key[0] == 'E' && key[1] != 'M'));
    EXPECT_TRUE(wire || conduit(key)) << "VOR_ELINE_CABLE key " << key << " gives no label";
  }
  for (const std::string& key : RadioKeys(Dialog(kVormis, "VOR_SLINE_CABLE"))) {
    well_formed("VOR_SLINE_CABLE", key);
    upper("VOR_SLINE_CABLE", key);
    bool cable = key.size() > 1 && (key[0] == 'V' || key[0] == 'S' || key[0] == 'T');
    EXPECT_TRUE(cable || conduit(key)) << "VOR_SLINE_CABLE key " << key << " gives no label";
  }
  for (const std::string& key : RadioKeys(Dialog(kVormis, "VOR_SLINE_CABLE_1"))) {
    well_formed("VOR_SLINE_CABLE_1", key);
    upper("VOR_SLINE_CABLE_1", key);
  }

  // PLINE: a size in millimetres, or A and a size in inches. A group is
  // found again by its size alone, whatever its unit, so no size may be
  // offered in both units.
  std::set<std::string> mm, inch;
  for (const std::string& key : RadioKeys(Dialog(kVormis, "VOR_PLINE_CABLE"))) {
    well_formed("VOR_PLINE_CABLE", key);
    bool in_inches = key[0] == 'A';
    std::string size = in_inches ? key.substr(1) : key;
    EXPECT_FALSE(size.empty()) << "VOR_PLINE_CABLE key " << key;
    EXPECT_TRUE(std::isdigit(static_cast<unsigned char>(size[0])))
        << "VOR_PLINE_CABLE key " << key << " is no size";
    (in_inches ? inch : mm).insert(size);
  }
  EXPECT_FALSE(mm.empty());
  EXPECT_FALSE(inch.empty());
  for (const std::string& size : mm) EXPECT_EQ(0u, inch.count(size)) << "size " << size;
}

// Lists whose rows the module splits into columns with tabs: tab stops that
// leave each column the bytes the module cuts it to, and one row chosen at
// a time where the module reads double clicks (a list that lets several
// rows be chosen reports none, and allow_accept would end the dialog as OK).
TEST_F(DclFilesTest, ListsFitTheirColumns) {
  struct Case {
    const char* file;
    const char* dialog;
    const char* key;
    std::vector<double> columns;  // widths of the columns, the last one included
  };
  const Case kCases[] = {
      {kVormis, "VOR_ELINE_0", "eline", {6, 10, 8, 3, 50}},
      {kVormis, "VOR_LAY_SET", "layer", {16, 16, 12, 12, 1, 1, 1}},
      {kBlk, "FILE_CON", "file", {12, 24, 8}},  // a DOS name, the date, a short note
  };
  for (const Case& c : kCases) {
    Tile dialog = Dialog(c.file, c.dialog);
    const Tile* list = dialog.Find(c.key);
    ASSERT_TRUE(list) << c.key;
    std::istringstream in(list->AttrString("tabs"));
    std::vector<double> stops;
    for (double stop; in >> stop;) stops.push_back(stop);
    ASSERT_EQ(c.columns.size() - 1, stops.size())
        << c.key << " tabs \"" << list->AttrString("tabs") << "\"";
    double start = 0;
    for (size_t i = 0; i < stops.size(); ++i) {
      EXPECT_GE(stops[i] - start, c.columns[i]) << c.key << " column " << i + 1;
      start = stops[i];
    }
    const AttrValue* width = list->Attr("width");
    ASSERT_TRUE(width && width->is_number()) << c.key;
    EXPECT_GE(width->number(), start + c.columns.back()) << c.key;
  }

  const std::pair<const char*, const char*> kDoubleClicked[] = {
      {"VOR_ELINE_0", "eline"}, {"VOR_ELINE_2", "codelist"}, {"VOR_LAY_SET", "layer"}};
  for (const auto& [dialog_name, key] : kDoubleClicked) {
    Tile dialog = Dialog(kVormis, dialog_name);
    const Tile* list = dialog.Find(key);
    ASSERT_TRUE(list) << key;
    EXPECT_FALSE(list->IsTrue("allow_accept")) << key;
  }
  Tile browser = Dialog(kBlk, "FILE_CON");
  ASSERT_TRUE(browser.Find("path"));
  EXPECT_FALSE(browser.Find("path")->IsTrue("allow_accept"));
}

// The files are Big5, as the host shows them: every label must decode, and
// the bytes must not be UTF-8 (a file saved without conversion).
TEST_F(DclFilesTest, LabelsAreBig5) {
  for (const char* file : {kVormis, kBlk}) {
    std::string bytes;
    ASSERT_TRUE(ReadBytes(kDclDir + file, &bytes)) << file;
    EXPECT_TRUE(std::any_of(bytes.begin(), bytes.end(),
                            [](char c) { return static_cast<unsigned char>(c) >= 0x80; }))
        << file << " holds no Chinese at all";
    std::string ignored;
    EXPECT_FALSE(Utf8ToBig5(bytes, &ignored)) << file << " reads as UTF-8";

    for (const std::string& name : Libraries()[file].DialogNames()) {
      Walk(Dialog(file, name), [&](const Tile& tile, const Tile*) {
        std::string label = tile.AttrString("label");
        EXPECT_EQ(std::string::npos, Big5ToUtf8(label).find("\\x"))
            << name << " label " << Big5ToUtf8(label);
      });
    }
  }
}

}  // namespace
}  // namespace vorhost::dcl
