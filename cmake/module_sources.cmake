# module_sources.cmake - the module's folders and sources, relative to the
# top of the tree: one list for the library vorhost links and for
# vormis.arx, the DLL the real host loads (cmake/arx).
set(VOR_MODULE_DIRS host util linetool cable draw panel numtool browser layer)
set(VOR_MODULE_SOURCES
  host/dialogs.cpp
  host/entry.cpp
  host/hostval.cpp
  util/textlist.cpp
  util/textutil.cpp
  linetool/catalogue.cpp
  linetool/editor.cpp
  linetool/linetool.cpp
  linetool/ltgen.cpp
  cable/cable.cpp
  cable/spec_label.cpp
  draw/runs.cpp
  numtool/numtool.cpp
  layer/layer.cpp
  browser/notes.cpp
  browser/browser.cpp
  panel/acf.cpp
  panel/schedule.cpp
  panel/circuit_text.cpp
)
