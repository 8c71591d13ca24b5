/* The interactive shell: it reads lines from the terminal or from a command file, cuts them into tokens,
 * answers its own commands, and carries each administration command to a service as one request with one
 * reply. For use by one thread. */
#ifndef ZUV_REMOTE_SHELL_SHELL_H
#define ZUV_REMOTE_SHELL_SHELL_H

#include <stdint.h>
#include <stdio.h>

#include "remoteConfig/RemoteConfigClient.h"
#include "remoteConfig/ServiceAdmin.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Size of the line buffer, terminator included. */
#define BREL_SHELL_LINE_SIZE 4096

/* Room of the token vector. */
#define BREL_SHELL_MAX_TOKENS 256

typedef struct BRELShell {
    int32_t domainId; /* the DDS domain that the client joins */
    int32_t timeout;  /* how long to wait for a reply, in seconds */
    FILE *input;      /* the standard input or the command file */
    BRELRemoteConfigClient remoteConfig;
} BRELShell;

/* The process's shell. */
extern BRELShell BRELShell_g_instance;

/* Not 0 ends the session loop. Written and read by the main thread alone, never by a signal handler. */
extern int32_t BRELShell_g_terminate;

typedef void (*BRELShell_sigHandler)(int);

/* Install `handler` for `sig`, to run with all signals masked and without restarting interrupted system
 * calls: a signal is to interrupt a blocked read. A signal that is ignored stays ignored. Returns 0, or
 * -1 when the disposition cannot be read or set. */
int BRELShell_setSignalHandler(int sig, BRELShell_sigHandler handler);

/* The shell's handler: writes one new line to the standard output and ends nothing. */
void BRELShell_terminateWithSignal(int signum);

/* Take `domainId`, `timeout` and `input` from the command line. Returns 1, or 0 after a report: an option
 * is malformed, or the command file cannot be opened. `argv` must outlive the call only. */
int BRELShell_getCommandLineParameters(BRELShell *self, int argc, char **argv);

/* Tell the operator the domain and the timeout, and start the client with them. Returns 1, or 0 after a
 * report; then the client has cleaned up. */
int BRELShell_initialize(BRELShell *self);

/* Finalize the client. The input is not closed. */
void BRELShell_finalize(BRELShell *self);

/* Run the session: prompt, read, execute, until a command, the end of a command file, or a failure to
 * make a request or reply ends it. */
void BRELShell_main(BRELShell *self);

/* Cut `line` into tokens, in place: each of `argv`, which has room for BREL_SHELL_MAX_TOKENS pointers,
 * points into `line`. `*argc` becomes the number of tokens that the line has; above
 * BREL_SHELL_MAX_TOKENS those behind the last entry are counted and not stored. A NULL `line` leaves
 * `*argc` as it is.
 *
 * Blanks separate tokens: the bytes up to 32, 127, and all from 128 up. A quote before a token makes
 * blanks part of it, up to a quote with a blank behind it. From the second token on, the beginning of an
 * entity name or of inline text ("domain_route.", "str://", ...), wherever it stands, makes the rest of
 * the line one token, with its blanks, its quotes and its new line. */
void BRELShell_createArgv(char *line, char **argv, int *argc);

/* Execute one command, `argc` being at least 1: print its outcome, or its syntax line, on standard
 * output. Sets BRELShell_g_terminate when the command is to end the session, or when no request or
 * reply can be made. */
void BRELShell_parseCommand(BRELShell *self, char **argv, int argc);

/* Make the request's octet body the resource tag "resource://<nestedResource>", terminator included. A
 * NULL `nestedResource` leaves the body as it is. Returns 1, or 0 after a report: the tag has more than
 * 254 characters, or there is no memory. */
int BRELShell_buildOctetBody(ZUV_Service_Admin_CommandRequest *outputRequest,
                             const char *nestedResource);

/* Print the list of commands on standard output. */
void BRELShell_printHelp(void);

#ifdef __cplusplus
}
#endif

#endif
