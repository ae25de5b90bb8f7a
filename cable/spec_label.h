/* spec_label.h - the item list of a run type (groups of item key and
 * count, such as ((S5.5 2) (E5.5 1))), its edit rule, the family rules
 * that turn it into a label, and the label's drawing form. */
#ifndef VORMIS_CABLE_SPEC_LABEL_H
#define VORMIS_CABLE_SPEC_LABEL_H

/* The diameter sign in Big5, and the host's text code for it. */
#define DIAMETER_SIGN "\xA3\x70" /* φ */
#define DIAMETER_CODE "%%c"

/* Sets the count of the item key in list (a 256-byte buffer, changed in
 * place): count is read as a decimal number; 0 removes the item's group,
 * a negative count changes nothing. For PLINE, size is the pressed size
 * and finds the group whose key ends in "_" and that size; for the other
 * families size is NULL and the group is found by its key. */
void spec_set_count(char *list, const char *key, const char *size, const char *count);

/* The label (stored form, at most 255 bytes) that the rule of family kind
 * ("ELINE", "SLINE" or "PLINE") makes of list, into out (256 bytes). */
void spec_format_label(const char *kind, const char *list, char *out);

/* Turns the label in field 5 of RecordFields into the text sent to the
 * host's TEXT command: quote escapes dropped, diameter signs as "%%c",
 * cut at 255 bytes between whole characters. */
void label_drawing_form(void);

#endif
