/*
 * Loaded in front of a program, makes one of its calls fail. FAULT says which: "CALL:N:WHAT" is the N-th call of CALL
 * (from 1), and with a "+" behind WHAT every later one. WHAT is an errno as a number, "end" (0 bytes), "short" (half of
 * what was asked for), or "signal" and a number. FAULT_NO_TMPFILE refuses files without a name. FAULT_COUNTS is a file
 * that receives how often each call was made.
 *
 * SPDX-License-Identifier: MIT
 */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <signal.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

enum Call {
    Malloc,
    Open,
    Stat,
    Fstat,
    Access,
    Readlink,
    Read,
    Pread,
    Write,
    Fsync,
    Fchmod,
    Linkat,
    Rename,
    Close,
    Calls
};
static const char *const s_names[Calls] = {"malloc", "open",  "stat",  "fstat",  "access", "readlink", "read",
                                           "pread",  "write", "fsync", "fchmod", "linkat", "rename",   "close"};
enum What { Nothing, Errno, End, Short, Signal };

static int s_call = -1;
static long s_first;
static int s_forEver;
static enum What s_what;
static int s_number;
static int s_noTmpFile;
static long s_own[Calls];
/* Of this process, or shared with who counts. */
static long *s_counts = s_own;

static void readFault(const char *text) {
    char call[16], what[16];
    if (!text || sscanf(text, "%15[a-z]:%ld:%15s", call, &s_first, what) != 3) return;
    for (int i = 0; i < Calls; ++i) {
        if (strcmp(s_names[i], call) == 0) s_call = i;
    }
    s_forEver = what[strlen(what) - 1] == '+';
    s_what = strncmp(what, "end", 3) == 0      ? End
             : strncmp(what, "short", 5) == 0  ? Short
             : strncmp(what, "signal", 6) == 0 ? Signal
                                               : Errno;
    s_number = atoi(s_what == Signal ? what + 6 : what);
}

/* Mapped, since a program may end without a word. */
static void shareCounts(const char *path) {
    const int file = path ? open(path, O_RDWR) : -1;
    if (file < 0) return;
    void *const shared = mmap(NULL, sizeof s_own, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    if (shared == MAP_FAILED) return;
    memcpy(shared, s_own, sizeof s_own);
    s_counts = shared;
}

__attribute__((constructor)) static void start(void) {
    shareCounts(getenv("FAULT_COUNTS"));
    s_noTmpFile = getenv("FAULT_NO_TMPFILE") != NULL;
    readFault(getenv("FAULT"));
}

/* What becomes of this call; errno is set for Errno. */
static enum What befalls(enum Call call) {
    const long number = ++s_counts[call];
    if ((int)call != s_call || number < s_first || (number > s_first && !s_forEver)) return Nothing;
    if (s_what == Signal) raise(s_number);
    if (s_what == Errno) errno = s_number;
    return s_what == Signal ? Nothing : s_what;
}

static void *next(const char *name) {
    return dlsym(RTLD_NEXT, name);
}

#define REAL(name) (__extension__(__typeof__(&name)) next(#name))

int open(const char *path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = flags & (O_CREAT | O_TMPFILE) ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    if (s_noTmpFile && (flags & O_TMPFILE) == O_TMPFILE) {
        errno = EOPNOTSUPP;
        return -1;
    }
    return befalls(Open) == Errno ? -1 : REAL(open)(path, flags, mode);
}

int stat(const char *path, struct stat *facts) {
    return befalls(Stat) == Errno ? -1 : REAL(stat)(path, facts);
}

int fstat(int file, struct stat *facts) {
    return befalls(Fstat) == Errno ? -1 : REAL(fstat)(file, facts);
}

int access(const char *path, int mode) {
    return befalls(Access) == Errno ? -1 : REAL(access)(path, mode);
}

ssize_t readlink(const char *path, char *text, size_t size) {
    return befalls(Readlink) == Errno ? -1 : REAL(readlink)(path, text, size);
}

int fsync(int file) {
    return befalls(Fsync) == Errno ? -1 : REAL(fsync)(file);
}

int fchmod(int file, mode_t mode) {
    return befalls(Fchmod) == Errno ? -1 : REAL(fchmod)(file, mode);
}

int linkat(int oldFolder, const char *old, int newFolder, const char *new, int flags) {
    return befalls(Linkat) == Errno ? -1 : REAL(linkat)(oldFolder, old, newFolder, new, flags);
}

int rename(const char *old, const char *new) {
    return befalls(Rename) == Errno ? -1 : REAL(rename)(old, new);
}

/* The descriptor is gone all the same, as the system does it. */
int close(int file) {
    const int result = REAL(close)(file);
    return befalls(Close) == Errno ? -1 : result;
}

static size_t share(enum What what, size_t size) {
    return what == Short ? (size + 1) / 2 : size;
}

ssize_t read(int file, void *bytes, size_t size) {
    const enum What what = befalls(Read);
    return what == Errno ? -1 : what == End ? 0 : REAL(read)(file, bytes, share(what, size));
}

ssize_t pread(int file, void *bytes, size_t size, off_t place) {
    const enum What what = befalls(Pread);
    return what == Errno ? -1 : what == End ? 0 : REAL(pread)(file, bytes, share(what, size), place);
}

ssize_t write(int file, const void *bytes, size_t size) {
    const enum What what = befalls(Write);
    return what == Errno ? -1 : REAL(write)(file, bytes, share(what, size));
}

/* An address sanitizer brings an allocator of its own. */
#ifndef FAULTS_WITHOUT_MALLOC
void *__libc_malloc(size_t size);
void *__libc_calloc(size_t count, size_t size);
void *__libc_realloc(void *block, size_t size);

void *malloc(size_t size) {
    return befalls(Malloc) == Errno ? NULL : __libc_malloc(size);
}

void *calloc(size_t count, size_t size) {
    return befalls(Malloc) == Errno ? NULL : __libc_calloc(count, size);
}

void *realloc(void *block, size_t size) {
    return befalls(Malloc) == Errno ? NULL : __libc_realloc(block, size);
}
#endif
