#!/usr/bin/env python3
"""check_arx.py - vormis.arx as the host sees it, and the definition file
of the host's exports against host/ads.h.

  check_arx.py definitions ADS_H ADS_DEF
      ADS_DEF lists exactly the operations that ADS_H declares, but the
      module's own entry points.
  check_arx.py dll OBJDUMP HOST ADS_H DLL
      DLL is a 32-bit Windows DLL that exports exactly acrxEntryPoint and
      acrxGetApiVersion, imports by name from HOST only operations that
      ADS_H declares, imports from nothing but HOST, the C runtime
      (msvcrt.dll) and kernel32, and whose acrxGetApiVersion gives the
      interface version 0xE0000.

  check_arx.py shared NM ADS_H PLATFORM_H LIBRARY
      LIBRARY, the module as vorhost loads it (a shared library), exports
      exactly acrxEntryPoint and acrxGetApiVersion, and every symbol it
      leaves to others is a host operation that ADS_H or PLATFORM_H
      declares, or is defined by a library it needs itself (the C
      library; the sanitizers' runtimes in a sanitizer build), or is
      weak: none belongs to the emulator.

Each problem is printed on a line of its own; the exit status is 1 when
there is one.
"""
import re
import subprocess
import sys

MODULE_EXPORTS = {"acrxEntryPoint", "acrxGetApiVersion"}
API_VERSION = 0xE0000
SYSTEM_DLLS = {"msvcrt.dll", "kernel32.dll"}


def declared_functions(header):
    """The names of the functions that a C header declares."""
    text = re.sub(r"/\*.*?\*/", " ", header, flags=re.S)
    text = re.sub(r"//[^\n]*", " ", text)
    text = re.sub(r"^\s*#[^\n]*", " ", text, flags=re.M)
    text = re.sub(r"__attribute__\s*\(\(.*?\)\)", " ", text, flags=re.S)
    names = set()
    for statement in text.split(";"):
        # What follows the last brace: a declaration, not a member.
        statement = " ".join(re.split(r"[{}]", statement)[-1].split())
        if statement.startswith("typedef"):
            continue
        match = re.match(r"^[\w\s*]*?\b(\w+)\s*\(", statement)
        if match:
            names.add(match.group(1))
    return names


def definition_exports(definition):
    """The names in the EXPORTS section of a module-definition file."""
    names, in_exports = [], False
    for line in definition.splitlines():
        line = line.split(";", 1)[0].strip()
        if not line:
            continue
        word = line.split()[0]
        if word in ("EXPORTS", "LIBRARY", "NAME", "IMPORTS", "SECTIONS"):
            in_exports = word == "EXPORTS"
        elif in_exports:
            names.append(word)
    return names


def definition_problems(header, definition):
    host_operations = declared_functions(header) - MODULE_EXPORTS
    listed = definition_exports(definition)
    problems = ["%s is listed twice" % n for n in sorted({n for n in listed if listed.count(n) > 1})]
    problems += ["%s is declared in ads.h but not listed" % n
                 for n in sorted(host_operations - set(listed))]
    problems += ["%s is listed but is not a host operation of ads.h" % n
                 for n in sorted(set(listed) - host_operations)]
    return problems


class PeFile:
    """What objdump -p says of a PE file."""

    def __init__(self, dump):
        self.format = ""
        self.is_dll = False
        self.image_base = 0
        self.export_rvas = []  # by index in the export address table
        self.exports = []
        self.export_index = {}  # name -> index in the export address table
        self.imports = {}  # DLL name -> names imported (None for an ordinal)
        section, dll = None, None
        for line in dump.splitlines():
            stripped = line.strip()
            if "file format" in line:
                self.format = line.split("file format", 1)[1].strip()
            elif line.startswith("ImageBase"):
                self.image_base = int(line.split()[1], 16)
            elif line.startswith("Characteristics"):
                section = "characteristics"
            elif stripped.startswith("Export Address Table --"):
                section = "export addresses"
            elif stripped == "[Ordinal/Name Pointer] Table":
                section = "export names"
            elif stripped.startswith("DLL Name:"):
                dll = stripped.split(":", 1)[1].strip()
                self.imports.setdefault(dll, [])
                section = "imports"
            elif not stripped:
                if section != "imports" or self.imports.get(dll):
                    section = None
            elif section == "characteristics":
                self.is_dll = self.is_dll or stripped == "DLL"
            elif section == "export addresses" and re.match(r"\[\s*\d+\]", stripped):
                self.export_rvas.append(int(stripped.split("]")[-1].split()[0], 16))
            elif section == "export names":
                match = re.match(r"\[\s*(\d+)\]\s+(\S+)$", stripped)
                if match:
                    self.exports.append(match.group(2))
                    self.export_index[match.group(2)] = int(match.group(1))
            elif section == "imports" and not stripped.startswith("vma:"):
                fields = stripped.split()
                name = fields[-1] if len(fields) >= 3 else None
                self.imports[dll].append(None if name == "<none>" else name)

    def export_address(self, name):
        """The address of an exported function once loaded at its image base,
        or None when the name has no entry in the export address table."""
        index = self.export_index.get(name)
        if index is None or index >= len(self.export_rvas):
            return None
        return self.image_base + self.export_rvas[index]


def dll_problems(pe, host, header):
    problems = []
    if pe.format != "pei-i386":
        problems.append("not a 32-bit Windows file: %r" % pe.format)
    if not pe.is_dll:
        problems.append("not a DLL")
    if sorted(pe.exports) != sorted(MODULE_EXPORTS) or len(pe.export_rvas) != len(MODULE_EXPORTS):
        problems.append("exports %d entries, named %s; wanted exactly %s" % (
            len(pe.export_rvas), ", ".join(sorted(pe.exports)) or "none",
            ", ".join(sorted(MODULE_EXPORTS))))
    host_operations = declared_functions(header) - MODULE_EXPORTS
    if not any(dll.lower() == host.lower() for dll in pe.imports):
        problems.append("imports nothing from %s" % host)
    for dll, names in sorted(pe.imports.items()):
        if dll.lower() == host.lower():
            for name in names:
                if name is None:
                    problems.append("imports from %s by ordinal" % dll)
                elif name not in host_operations:
                    problems.append("imports %s from %s, which ads.h does not declare" % (name, dll))
        elif dll.lower() not in SYSTEM_DLLS:
            problems.append("imports from %s: %s" % (dll, ", ".join(n or "<ordinal>" for n in names)))
    return problems


def dynamic_symbols(nm_output):
    """(name, kind) of each line of nm -D: kind is nm's letter, name keeps
    its @VERSION."""
    symbols = []
    for line in nm_output.splitlines():
        fields = line.split()
        if len(fields) >= 2:
            symbols.append((fields[-1], fields[-2]))
    return symbols


def shared_problems(defined, undefined, headers, system):
    """defined and undefined: nm -D's text with --defined-only and
    --undefined-only; headers: the texts of ads.h and platform.h; system:
    the names the libraries the module needs define."""
    problems = []
    exports = sorted(name for name, _ in dynamic_symbols(defined))
    if exports != sorted(MODULE_EXPORTS):
        problems.append("exports %s; wanted exactly %s" % (
            ", ".join(exports) or "nothing", ", ".join(sorted(MODULE_EXPORTS))))
    host_operations = set()
    for header in headers:
        host_operations |= declared_functions(header)
    host_operations -= MODULE_EXPORTS
    for name, kind in dynamic_symbols(undefined):
        name = name.split("@")[0]
        if name in host_operations or name in system or kind in ("w", "v"):
            continue
        problems.append("needs %s, neither a host operation of ads.h or platform.h "
                        "nor of a library it needs" % name)
    return problems


def gives_constant(disassembly, value):
    """Whether the code up to the first return loads value as the result."""
    for line in disassembly.splitlines():
        fields = line.split("\t")
        instruction = " ".join(fields[-1].split()) if len(fields) >= 3 else ""
        if instruction == "mov $%#x,%%eax" % value:
            return True
        if instruction.startswith("ret"):
            return False
    return False


def version_problems(pe, disassemble):
    """disassemble(start, stop) gives objdump -d's text of that range."""
    start = pe.export_address("acrxGetApiVersion")
    if start is None or gives_constant(disassemble(start, start + 32), API_VERSION):
        return []
    return ["acrxGetApiVersion does not give %#x" % API_VERSION]


def report(problems):
    for problem in problems:
        print(problem)
    return 1 if problems else 0


def read(path):
    with open(path, encoding="utf-8") as f:
        return f.read()


def main(argv):
    if len(argv) == 4 and argv[1] == "definitions":
        return report(definition_problems(read(argv[2]), read(argv[3])))
    if len(argv) == 6 and argv[1] == "dll":
        objdump, host, header, dll = argv[2:]

        def run(*options):
            return subprocess.run([objdump, *options, dll], check=True, capture_output=True,
                                  text=True).stdout

        def disassemble(start, stop):
            return run("-d", "--start-address=%#x" % start, "--stop-address=%#x" % stop)

        pe = PeFile(run("-p"))
        return report(dll_problems(pe, host, read(header)) + version_problems(pe, disassemble))
    if len(argv) == 6 and argv[1] == "shared":
        nm, ads_h, platform_h, library = argv[2:]

        def symbols(which, path=library):
            return subprocess.run([nm, "-D", which, path], check=True, capture_output=True,
                                  text=True).stdout

        needed = subprocess.run(["ldd", library], check=True, capture_output=True, text=True).stdout
        system = set()
        for path in re.findall(r"=> (/\S+)", needed):
            system |= {name.split("@")[0] for name, _ in dynamic_symbols(symbols("--defined-only", path))}
        return report(shared_problems(symbols("--defined-only"), symbols("--undefined-only"),
                                      [read(ads_h), read(platform_h)], system))
    print(__doc__, file=sys.stderr)
    return 2


if __name__ == "__main__":
    sys.exit(main(sys.argv))
