#!/usr/bin/env python3
"""check_arx_test.py - the checks of vormis.arx reject what they are for:
a DLL that exports more, leans on a runtime DLL the host does not have, or
imports from the host what the host does not export; a definition file out
of step with ads.h. Runs on objdump's text, so it needs no cross compiler.
"""
import os
import sys
import unittest

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import check_arx  # noqa: E402

ADS_H = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "host", "ads.h")

HEADER = """
#define RTNORM 5100
typedef void (*CLIENTFUNC)(ads_callback_packet *cpkt);
typedef struct { void *dialog; char *value; } ads_callback_packet;
struct resbuf { struct resbuf *rbnext; short restype; };
int ads_printf(const char *format, ...)
#if defined(__GNUC__)
    __attribute__((format(printf, 1, 2)))
#endif
    ;
int ads_ssget(const char *str, const void *pt1,
              const struct resbuf *filter, long ss[2]);
struct resbuf *ads_newrb(int v); /* ads_hidden(void); */
void acrxUnlockApplication(void *appId);
int acrxEntryPoint(int msg, void *pkt);
long acrxGetApiVersion(void);
"""

HOST_OPERATIONS = ["ads_printf", "ads_ssget", "ads_newrb", "acrxUnlockApplication"]


def objdump(exports=("acrxEntryPoint", "acrxGetApiVersion"), addresses=None, imports=None,
            fmt="pei-i386", dll=True):
    """Text laid out as objdump -p lays out a DLL's headers and tables."""
    if imports is None:
        imports = {"KERNEL32.dll": ["GetLastError", "Sleep"], "msvcrt.dll": ["fopen", "_findfirst"],
                   "ACAD.EXE": ["ads_printf", "ads_newrb"]}
    lines = ["", "vormis.arx:     file format %s" % fmt, "", "Characteristics 0x230e",
             "\texecutable", "\t32 bit words"] + (["\tDLL"] if dll else []) + [
             "", "Magic\t\t\t010b\t(PE32)", "ImageBase\t\t62640000", "", "There is an import table in .idata at 0x626f4000",
             "", "The Import Tables (interpreted .idata section contents)",
             " vma:            Hint    Time      Forward  DLL       First",
             "                 Table   Stamp     Chain    Name      Thunk"]
    for dll_name, names in imports.items():
        lines += [" 000b4000\t000b4050 00000000 00000000 000b4af8 000b4248", "",
                  "\tDLL Name: %s" % dll_name, "\tvma:  Hint/Ord Member-Name Bound-To"]
        for i, name in enumerate(names):
            lines.append("\tb44%02d\t  %3d  %s" % (i, i + 3, name or "<none>"))
        lines.append("")
    lines += [" 000b403c\t00000000 00000000 00000000 00000000 00000000", "",
              "There is an export table in .edata at 0x69133000", "",
              "The Export Tables (interpreted .edata section contents)", "",
              "Name \t\t\t\t000b303c vormis.arx", "",
              "Export Address Table -- Ordinal Base 1"]
    for i in range(len(exports) if addresses is None else addresses):
        lines.append("\t[%4d] +base[%4d] %x Export RVA" % (i, i + 1, 0x7220 + 0x20 * i))
    lines += ["", "[Ordinal/Name Pointer] Table"]
    lines += ["\t[%4d] %s" % (i, name) for i, name in enumerate(exports)]
    lines += ["", "", "PE File Base Relocations (interpreted .reloc section contents)", ""]
    return "\n".join(lines)


# objdump -d of acrxGetApiVersion: optimised, and built without optimising.
RETURNS_VERSION = """
Disassembly of section .text:

626418f0 <.text+0x8f0>:
626418f0:\tb8 00 00 0e 00       \tmov    $0xe0000,%eax
626418f5:\tc3                   \tret
626418f6:\t90                   \tnop
"""
RETURNS_VERSION_UNOPTIMISED = """
62641a20:\t55                   \tpush   %ebp
62641a21:\t89 e5                \tmov    %esp,%ebp
62641a23:\tb8 00 00 0e 00       \tmov    $0xe0000,%eax
62641a28:\t5d                   \tpop    %ebp
62641a29:\tc3                   \tret
"""
RETURNS_OTHER = """
626418f0:\t31 c0                \txor    %eax,%eax
626418f2:\tc3                   \tret
626418f3:\tb8 00 00 0e 00       \tmov    $0xe0000,%eax
"""


def problems(**kwargs):
    return check_arx.dll_problems(check_arx.PeFile(objdump(**kwargs)), "ACAD.EXE", HEADER)


class HeaderTest(unittest.TestCase):
    def test_declarations_across_lines_and_attributes_but_not_types(self):
        names = check_arx.declared_functions(HEADER)
        self.assertEqual(names, set(HOST_OPERATIONS) | check_arx.MODULE_EXPORTS)

    def test_the_real_header(self):
        with open(ADS_H, encoding="utf-8") as f:
            names = check_arx.declared_functions(f.read())
        for name in ["ads_printf", "ads_ssget", "ads_command", "acad__strdup",
                     "acrxUnlockApplication", "acrxEntryPoint"]:
            self.assertIn(name, names)
        self.assertFalse(names & {"CLIENTFUNC", "resbuf", "ads_callback_packet", "defined"})


class DefinitionTest(unittest.TestCase):
    def check(self, body):
        return check_arx.definition_problems(HEADER, "; the host\nLIBRARY ACAD.EXE\nEXPORTS\n" + body)

    def test_in_step(self):
        self.assertEqual(self.check("; all\n    " + "\n    ".join(HOST_OPERATIONS) + "\n"), [])

    def test_out_of_step(self):
        self.assertEqual(self.check("ads_printf\nads_ssget\nads_newrb\nads_newrb\nacrxEntryPoint\n"), [
            "ads_newrb is listed twice",
            "acrxUnlockApplication is declared in ads.h but not listed",
            "acrxEntryPoint is listed but is not a host operation of ads.h"])


class DllTest(unittest.TestCase):
    def test_the_dll_as_built(self):
        self.assertEqual(problems(), [])

    def test_rejected(self):
        cases = [
            ("a third export", dict(exports=("acrxEntryPoint", "acrxGetApiVersion", "module_reset")),
             "exports 3 entries, named acrxEntryPoint, acrxGetApiVersion, module_reset; "
             "wanted exactly acrxEntryPoint, acrxGetApiVersion"),
            ("an export without a name", dict(addresses=3),
             "exports 3 entries, named acrxEntryPoint, acrxGetApiVersion; "
             "wanted exactly acrxEntryPoint, acrxGetApiVersion"),
            ("a decorated export", dict(exports=("_acrxEntryPoint", "acrxGetApiVersion")),
             "exports 2 entries, named _acrxEntryPoint, acrxGetApiVersion; "
             "wanted exactly acrxEntryPoint, acrxGetApiVersion"),
            ("the runtime of the compiler", dict(imports={
                "ACAD.EXE": ["ads_printf"], "libstdc++-6.dll": ["_ZdlPv"],
                "libgcc_s_dw2-1.dll": [None]}),
             "imports from libgcc_s_dw2-1.dll: <ordinal>"),
            ("the platform layer left to the host", dict(imports={
                "ACAD.EXE": ["ads_printf", "plat_fopen"]}),
             "imports plat_fopen from ACAD.EXE, which ads.h does not declare"),
            ("a host operation by ordinal", dict(imports={"ACAD.EXE": ["ads_printf", None]}),
             "imports from ACAD.EXE by ordinal"),
            ("the module's own entry from the host", dict(imports={
                "acad.exe": ["acrxEntryPoint"]}),
             "imports acrxEntryPoint from acad.exe, which ads.h does not declare"),
            ("nothing from the host", dict(imports={"msvcrt.dll": ["fopen"]}),
             "imports nothing from ACAD.EXE"),
            ("a 64-bit file", dict(fmt="pei-x86-64"), "not a 32-bit Windows file: 'pei-x86-64'"),
            ("a program", dict(dll=False), "not a DLL"),
        ]
        for what, kwargs, expected in cases:
            with self.subTest(what):
                self.assertIn(expected, problems(**kwargs))


def needs(name):
    """The problem of a symbol the module must not need."""
    return "needs %s, neither a host operation of ads.h or platform.h nor of a library it needs" % name


class SharedTest(unittest.TestCase):
    EXPORTS = "0000000000003a50 T acrxEntryPoint\n0000000000003bb0 T acrxGetApiVersion\n"
    IMPORTS = ("                 w __cxa_finalize@GLIBC_2.2.5\n                 w __gmon_start__\n"
               "                 U ads_printf\n                 U memcpy@GLIBC_2.14\n")

    def check(self, defined=EXPORTS, undefined=IMPORTS):
        return check_arx.shared_problems(defined, undefined, [HEADER, "int plat_getdrive(void);"],
                                         {"memcpy", "__cxa_finalize"})

    def test_the_module_as_built(self):
        self.assertEqual(self.check(undefined=self.IMPORTS + "                 U plat_getdrive\n"), [])

    def test_rejected(self):
        cases = [
            ("a third export", dict(defined=self.EXPORTS + "0000000000004000 T module_reset\n"),
             "exports acrxEntryPoint, acrxGetApiVersion, module_reset; "
             "wanted exactly acrxEntryPoint, acrxGetApiVersion"),
            ("an entry point hidden", dict(defined="0000000000003a50 T acrxEntryPoint\n"),
             "exports acrxEntryPoint; wanted exactly acrxEntryPoint, acrxGetApiVersion"),
            ("a function of the emulator", dict(
                undefined=self.IMPORTS + "                 U _ZN7vorhost4Host7CurrentEv\n"),
             needs("_ZN7vorhost4Host7CurrentEv")),
            ("an operation the headers do not declare", dict(
                undefined=self.IMPORTS + "                 U ads_secret\n"),
             needs("ads_secret")),
            ("a name of no library it needs", dict(
                undefined=self.IMPORTS + "                 U fopen@GLIBC_2.2.5\n"),
             needs("fopen")),
            ("its own entry point from the host", dict(
                undefined=self.IMPORTS + "                 U acrxEntryPoint\n"),
             needs("acrxEntryPoint")),
        ]
        for what, kwargs, expected in cases:
            with self.subTest(what):
                self.assertIn(expected, self.check(**kwargs))


class VersionTest(unittest.TestCase):
    def test_the_code_of_acrx_get_api_version(self):
        pe = check_arx.PeFile(objdump())
        self.assertEqual(pe.export_address("acrxGetApiVersion"), 0x62640000 + 0x7240)
        for code, expected in [(RETURNS_VERSION, []), (RETURNS_VERSION_UNOPTIMISED, []),
                               (RETURNS_OTHER, ["acrxGetApiVersion does not give 0xe0000"])]:
            seen = []

            def disassemble(start, stop, code=code, seen=seen):
                seen.append((start, stop))
                return code
            self.assertEqual(check_arx.version_problems(pe, disassemble), expected)
            self.assertEqual(seen, [(0x62647240, 0x62647260)])


if __name__ == "__main__":
    unittest.main()
