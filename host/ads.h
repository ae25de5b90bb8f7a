/* ads.h - the CAD host's programming interface as the module sees it.
 *
 * Types, result and type codes, dialog constants and every host operation
 * the module calls, under the host's own names and signatures, with C
 * linkage. The module includes this and host/platform.h and nothing else of
 * the host; whoever links the module supplies these symbols (the real host,
 * or vorhost's emulator). The module's two exports, acrxEntryPoint and
 * acrxGetApiVersion, are declared here too so that both sides agree.
 */
#ifndef VORMIS_HOST_ADS_H
#define VORMIS_HOST_ADS_H

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Values ---------------------------------------------------------- */

typedef double ads_real;
typedef ads_real ads_point[3]; /* X = 0, Y = 1, Z = 2 */
typedef long ads_name[2];      /* an entity or selection-set name */

struct ads_binary {
    short clen;
    char *buf;
};

union ads_u_val {
    ads_real rreal;
    ads_real rpoint[3];
    short rint;
    char *rstring;
    long rlname[2];
    long rlong;
    struct ads_binary rbinary;
};

/* One item of a result-buffer list. In entity data, restype is the group
 * code: 0-9 and 100 carry rstring, 10-18 and 210 rpoint, 38-59 rreal,
 * 60-79 rint, 90-99 rlong, -1 and -2 rlname. */
struct resbuf {
    struct resbuf *rbnext;
    short restype;
    union ads_u_val resval;
};

/* ---- Result codes ------------------------------------------------------ */

#define RTNORM 5100   /* success: the only result the module tests for */
#define RTERROR (-5001)
#define RTCAN (-5002)  /* the user cancelled */
#define RTREJ (-5003)  /* the host rejected the request */
#define RTFAIL (-5004) /* the command-language link failed */
#define RTKWORD (-5005)

/* ---- Value type codes ------------------------------------------------- */

#define RTNONE 5000
#define RTREAL 5001
#define RTPOINT 5002 /* 2D point */
#define RTSHORT 5003
#define RTANG 5004
#define RTSTR 5005
#define RTENAME 5006
#define RTPICKS 5007
#define RTORINT 5008
#define RT3DPOINT 5009
#define RTLONG 5010
#define RTVOID 5014
#define RTLB 5016
#define RTLE 5017
#define RTDOTE 5018
#define RTNIL 5019
#define RTDXF0 5020
#define RTT 5021

/* ---- Function registration and results -------------------------------- */

int ads_defun(const char *sname, short funcno);
int ads_undef(const char *sname, short funcno);
int ads_getfuncode(void);
struct resbuf *ads_getargs(void);
int ads_retvoid(void);
int ads_retnil(void);
int ads_rett(void);
int ads_retint(int ival);
int ads_retreal(ads_real rval);
int ads_retstr(const char *s);
int ads_retlist(const struct resbuf *rbuf);
int ads_fail(const char *str);

/* Messages the host sends to acrxEntryPoint. */
enum {
    kNullMsg = 0,
    kInitAppMsg = 1,   /* the module has been loaded */
    kUnloadAppMsg = 2, /* the module is being unloaded */
    kLoadDwgMsg = 3,   /* a drawing has been opened */
    kUnloadDwgMsg = 4, /* a drawing is being closed */
    kInvkSubrMsg = 5   /* a registered function was called */
};

#define ACRX_API_VERSION 0xE0000L /* release 14 in the upper 16 bits */

void acrxUnlockApplication(void *appId);

/* The module's exports, called by the host. */
int acrxEntryPoint(int msg, void *pkt);
long acrxGetApiVersion(void);

/* ---- Command line ----------------------------------------------------- */

int ads_printf(const char *format, ...)
#if defined(__GNUC__)
    __attribute__((format(printf, 1, 2)))
#endif
    ;
int ads_alert(const char *str);
int ads_getpoint(const ads_point pt, const char *prompt, ads_point result);

/* ---- Commands, system variables, command-language symbols ------------- */

/* (type, value) pairs ended by 0, RTSTR "" being Enter. A command may stay
 * pending and be continued by the next call. */
int ads_command(int rtype, ...);
int ads_cmd(const struct resbuf *rbp);
int ads_getvar(const char *sym, struct resbuf *result);
int ads_setvar(const char *sym, const struct resbuf *val);
int ads_getsym(const char *sname, struct resbuf **value);
int ads_putsym(const char *sname, struct resbuf *value);

/* ---- Drawing database and selection ----------------------------------- */

struct resbuf *ads_entget(const ads_name ent);
int ads_entnext(const ads_name ent, ads_name result);
int ads_entlast(ads_name result);
int ads_textbox(const struct resbuf *args, ads_point pt1, ads_point pt2);
int ads_ssget(const char *str, const void *pt1, const void *pt2,
              const struct resbuf *filter, ads_name ss);
int ads_sslength(const ads_name ss, long *len);
int ads_ssname(const ads_name ss, long i, ads_name entres);
int ads_ssfree(const ads_name sname);
struct resbuf *ads_tblsearch(const char *tblname, const char *sym, int setnext);
int ads_wcmatch(const char *string, const char *pattern);

/* ---- Geometry ----------------------------------------------------------- */

ads_real ads_angle(const ads_point pt1, const ads_point pt2);
ads_real ads_distance(const ads_point pt1, const ads_point pt2);
void ads_polar(const ads_point pt, ads_real angle, ads_real dist, ads_point result);

/* ---- Result buffers --------------------------------------------------- */

struct resbuf *ads_newrb(int v);
int ads_relrb(struct resbuf *rb);
/* (type, value) pairs ended by 0. */
struct resbuf *ads_buildlist(int rtype, ...);

/* Calls a command-language function by name: args starts with its name as
 * RTSTR. The result list, possibly none, belongs to the caller. */
int ads_invoke(const struct resbuf *args, struct resbuf **result);

/* ---- Dialogs ------------------------------------------------------------ */

typedef void *ads_hdlg;
typedef void *ads_htile;

typedef struct {
    ads_hdlg dialog;
    ads_htile tile;
    char *value;
    void *client_data;
    int reason;
    long x, y;
} ads_callback_packet;

typedef void (*CLIENTFUNC)(ads_callback_packet *cpkt);
#define NULLCB ((CLIENTFUNC)0)

/* Dialog end statuses. */
#define DLGCANCEL 0
#define DLGOK 1
#define DLGSTATUS 2 /* the first status a dialog may set for itself */
#define DLGALLDONE (-1)

/* Callback reasons. */
#define CBR_SELECT 1
#define CBR_LOST_FOCUS 2
#define CBR_DRAG 3
#define CBR_DOUBLE_CLICK 4

/* Tile modes. */
#define MODE_ENABLE 0
#define MODE_DISABLE 1
#define MODE_SETFOCUS 2
#define MODE_SETSEL 3
#define MODE_FLIP 4

/* List operations. */
#define LIST_CHANGE 1
#define LIST_APPEND 2
#define LIST_NEW 3

int ads_load_dialog(const char *dclfile, int *dcl_id);
int ads_unload_dialog(int dcl_id);
int ads_new_dialog(const char *dlgname, int dcl_id, CLIENTFUNC def_callback,
                   ads_hdlg *hdlg);
int ads_start_dialog(ads_hdlg hdlg, int *status);
int ads_done_dialog(ads_hdlg hdlg, int status);
int ads_term_dialog(void);
int ads_action_tile(ads_hdlg hdlg, const char *key, CLIENTFUNC tilefunc);
int ads_set_tile(ads_hdlg hdlg, const char *key, const char *value);
int ads_get_tile(ads_hdlg hdlg, const char *key, char *value, int maxlen);
int ads_get_attr_string(ads_htile tile, const char *attr, char *value, int len);
int ads_mode_tile(ads_hdlg hdlg, const char *key, short mode);
int ads_start_list(ads_hdlg hdlg, const char *key, short operation, short index);
int ads_add_list(const char *item);
int ads_end_list(void);

/* ---- The host allocator: the module's whole heap comes from here -------- */

void *acad_malloc(size_t size);
void *acad_calloc(size_t count, size_t size);
void *acad_realloc(void *block, size_t size);
void acad_free(void *block);
char *acad__strdup(const char *s);

#ifdef __cplusplus
}
#endif

#endif /* VORMIS_HOST_ADS_H */
