/* The shell's command line as typed values, and the shell's version and usage texts.
 *
 * An option is given by any prefix of its name, in any case, behind one dash. For use by one thread. */
#ifndef ZUV_REMOTE_SHELL_SHELL_PARAMETER_MANAGER_H
#define ZUV_REMOTE_SHELL_SHELL_PARAMETER_MANAGER_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef enum BRELShellParameterType {
    BREL_SHELL_PARAMETER_TYPE_VOID = 0,   /* a flag without a value */
    BREL_SHELL_PARAMETER_TYPE_STRING = 1, /* takes the next argument as text */
    BREL_SHELL_PARAMETER_TYPE_INT = 2     /* takes the next argument as a decimal integer */
} BRELShellParameterType;

/* The ids of the options: their rows in the table. */
#define BREL_SHELL_PARAMETER_ID_DOMAIN_ID 0
#define BREL_SHELL_PARAMETER_ID_TIMEOUT 1
#define BREL_SHELL_PARAMETER_ID_CMD_FILE 2
#define BREL_SHELL_PARAMETER_ID_HELP 3
#define BREL_SHELL_PARAMETER_COUNT 4

/* "help" is asked for before a manager exists, so it takes part in no parsing and has no value. */
#define BREL_SHELL_PARAMETER_VALUE_COUNT 3

/* One row of the option table. */
typedef struct BRELShellParameterDesc {
    const char *name; /* without the dash */
    BRELShellParameterType type;
    const char *description;
    int32_t required; /* 0 or 1 */
    int32_t visible;  /* 0 or 1 */
} BRELShellParameterDesc;

extern const BRELShellParameterDesc
    BRELShellParameterManager_g_parameterDesc[BREL_SHELL_PARAMETER_COUNT];

/* How a value of each type is written in a usage text, by BRELShellParameterType. */
extern const char *const BRELShellParameterManager_g_parameterTypeDesc[3];

typedef struct BRELShellParameterValue {
    int32_t exists;    /* 0 or 1 */
    const char *value; /* the caller's argument, never copied */
} BRELShellParameterValue;

/* What `_init` holds from a successful initialize to finalize, and from then on. */
#define BREL_SHELL_PARAMETER_MANAGER_INITIALIZED 29508
#define BREL_SHELL_PARAMETER_MANAGER_FINALIZED 29509

typedef struct BRELShellParameterManager {
    int32_t _init;
    BRELShellParameterValue _parameterValues[BREL_SHELL_PARAMETER_VALUE_COUNT];
} BRELShellParameterManager;

/* A manager of `argc` (at least 1) arguments, the first of which is skipped. `argv` must not be NULL and
 * outlives the manager, which keeps pointers into it. NULL, after a report, when an argument is unusable
 * or there is no memory. Release with BRELShellParameterManager_delete. */
BRELShellParameterManager *BRELShellParameterManager_new(int argc, char **argv);

/* Finalize and free a manager. NULL is reported as a failed precondition. */
void BRELShellParameterManager_delete(BRELShellParameterManager *self);

/* Parse the arguments into `self`, a record whose `_init` is set: a value other than
 * BREL_SHELL_PARAMETER_MANAGER_INITIALIZED, as an initialized record is left as it is. Returns 1, or 0
 * after a report; the record then counts as not initialized. */
int BRELShellParameterManager_initialize(BRELShellParameterManager *self, int argc, char **argv);

/* Mark the record as finalized. It owns nothing. */
void BRELShellParameterManager_finalize(BRELShellParameterManager *self);

/* Read the option `parameterId` (0 to 2) as `parameterType`, which the caller decides, not the table.
 * `*exist`, unless `exist` is NULL, becomes 1 or 0. Only when the option was given, and `value` is not
 * NULL, `*value` is written: a `const char *` (STRING), an int32_t (INT), or nothing (VOID). An INT is
 * what strtol reads at the start of the text. Returns 1, or 0 after a report: for a failed precondition
 * and for an INT that does not begin with a number. */
int BRELShellParameterManager_getParameter(BRELShellParameterManager *self, void *value, int *exist,
                                           int parameterId, BRELShellParameterType parameterType);

/* Print one line with the product's name and the middleware's version on standard output. */
void BRELShellParameterManager_printVersion(void);

/* Print the version line and the options on standard output. `programName` must not be NULL. */
void BRELShellParameterManager_printHelp(char *programName);

/* The same as BRELShellParameterManager_printHelp. */
void BRELShellParameterManager_printUsage(char *programName);

#ifdef __cplusplus
}
#endif

#endif
