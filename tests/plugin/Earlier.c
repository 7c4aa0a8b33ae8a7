/*
 * A plug-in written in C that the host loads before Forms: it knows the tables by their numbers, catches what is raised
 * with setjmp, and raises through the frames of others with longjmp.
 *
 * Its name comes first, so it also sees how far Forms has come in each phase of the start.
 */
/* SPDX-License-Identifier: MIT */
#include <setjmp.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

typedef void (*Proc)(void);
typedef struct {
    uintptr_t node, slot;
} Object;

struct Setup {
    uint32_t version;
    uintptr_t extension;
    Proc *core;
    int32_t (*handshake)(uint32_t version, void *record);
};
struct Handshake {
    uint32_t version;
    uint16_t appName, extensionName;
    uint16_t (*exportTables)(void), (*replaceAndRegister)(void), (*init)(void), (*unload)(void);
};
struct Text {
    int32_t encoding;
    char *bytes;
    uint16_t length, capacity;
};
struct Record {
    void *doc, *field;
    struct Text *value, *change;
    int32_t selStart, selEnd;
    uint32_t reject, entries;
};

enum { ErrBadParam = 0x40000003, ErrBadField = 0x20020003, Forms11 = 0x00010001, Version4 = 0x00040000 };

static Proc *s_core, *s_lex, *s_doc, *s_view, *s_forms, *s_authoring;
static uintptr_t s_extension;
static int s_failures;

#define CHECK(condition)                                                                                               \
    do {                                                                                                               \
        if (!(condition)) {                                                                                            \
            ++s_failures;                                                                                              \
            fprintf(stderr, "Earlier.c:%d: %s is false\n", __LINE__, #condition);                                      \
        }                                                                                                              \
    } while (0)

static void raise_code(int32_t code) {
    ((void (*)(int32_t))s_core[1])(code);
}
static void push_frame(jmp_buf *env, void (*restore)(void *)) {
    ((void (*)(void *, void (*)(void *)))s_core[2])(env, restore);
}
static void pop_frame(void) {
    s_core[3]();
}
static int32_t raised_code(void) {
    return ((int32_t(*)(void))s_core[4])();
}
static uint16_t atom(const char *text) {
    return ((uint16_t(*)(const char *))s_core[5])(text);
}
static Proc *table(const char *name, uint32_t version) {
    return ((Proc * (*)(uint16_t, uint32_t)) s_core[9])(atom(name), version);
}
static void *field_named(void *doc, const char *name) {
    return ((void *(*)(void *, const char *))s_forms[4])(doc, name);
}
static uint16_t set_value(void *field, Object value) {
    return ((uint16_t(*)(void *, Object))s_forms[13])(field, value);
}
static Object new_string(void *doc, const char *text) {
    void *lex = ((void *(*)(void *))s_doc[23])(doc);
    return ((Object(*)(void *, uint16_t, const char *, int32_t))s_lex[11])(lex, 0, text, (int32_t)strlen(text));
}
static const char *value_of(void *field) {
    const Object value = ((Object(*)(void *))s_forms[9])(field);
    return ((const char *(*)(Object, int32_t *))s_lex[20])(value, NULL);
}

static void jump(void *env) {
    longjmp(*(jmp_buf *)env, 1);
}

/* The code that `body` raises. Nothing of ours needs cleaning up where the jump leads away from. */
static int32_t code_of(void (*body)(void *), void *data) {
    jmp_buf env;
    push_frame(&env, &jump);
    if (setjmp(env) == 0) {
        body(data);
        pop_frame();
        return 0;
    }
    pop_frame();
    return raised_code();
}

static void judge(void *data, void *unused) {
    struct Record *record = data;
    (void)unused;
    if (strcmp(record->value->bytes, "forbidden in C") == 0) record->reject = 1;
    if (strcmp(record->value->bytes, "raised in C") == 0) raise_code(ErrBadField);
}
static uint16_t raise_in_walk(void *field, void *data) {
    (void)field;
    (void)data;
    raise_code(ErrBadField);
    return 1;
}

static void rename_to_nothing(void *doc) {
    ((void *(*)(void *, const char *))s_authoring[9])(field_named(doc, "alpha"), "");
}
static void rename_below_a_field(void *doc) {
    ((void *(*)(void *, const char *))s_authoring[9])(field_named(doc, "alpha"), "secret.a.name.that.is.long.enough");
}
static void walk(void *doc) {
    ((void (*)(void *, uint16_t, uint16_t, uint16_t (*)(void *, void *), void *))s_forms[3])(doc, 1, 1, &raise_in_walk,
                                                                                             NULL);
}
static void set_what_raises(void *doc) {
    set_value(field_named(doc, "alpha"), new_string(doc, "raised in C"));
}
static void nested(void *doc) {
    CHECK(code_of(&set_what_raises, doc) == ErrBadField);
    CHECK(code_of(&rename_to_nothing, doc) == ErrBadParam);
    raise_code(0);
}

static void run(void *doc) {
    void *alpha = field_named(doc, "alpha");
    CHECK(alpha && strcmp(value_of(alpha), "one") == 0);
    CHECK(code_of(&rename_to_nothing, doc) == ErrBadParam);
    CHECK(code_of(&rename_below_a_field, doc) == ErrBadParam);
    CHECK(code_of(&walk, doc) == ErrBadField);
    CHECK(code_of(&set_what_raises, doc) == ErrBadField);
    CHECK(code_of(&nested, doc) == ErrBadParam);
    CHECK(set_value(alpha, new_string(doc, "forbidden in C")) == 0);
    CHECK(strcmp(value_of(alpha), "one") == 0);
    CHECK(set_value(alpha, new_string(doc, "two")) == 1);
    CHECK(strcmp(value_of(field_named(doc, "alpha")), "two") == 0);
}

static void doc_did_open(void *view, int32_t error, void *data) {
    const char *wanted = getenv("OBSERVER_CASE");
    (void)data;
    if (error || !wanted || strcmp(wanted, "c") != 0) return;
    s_failures = 0;
    run(((void *(*)(void *))s_view[33])(view));
    if (s_failures == 0) fprintf(stderr, "observer: c ok\n");
}

static uint16_t count(void *extension, void *data) {
    (void)extension;
    ++*(int *)data;
    return 1;
}
static void tell(const char *phase) {
    int running = 0;
    if (!getenv("OBSERVER_PHASES")) return;
    ((void (*)(uint16_t(*)(void *, void *), void *, uint16_t))s_core[11])(&count, &running, /*onlyRunning*/ 1);
    fprintf(stderr, "earlier: %s, Forms is %s, %d running\n", phase, table("Forms", Forms11) ? "there" : "not there",
            running);
}

static uint16_t export_tables(void) {
    tell("export");
    return 1;
}
static uint16_t replace_and_register(void) {
    tell("register");
    s_forms = table("Forms", Forms11);
    s_authoring = table("FormsAuthoring", 0x00010000);
    if (!s_forms || !s_authoring) return 0;
    return ((int32_t(*)(int32_t, void (*)(void *, void *), Proc, void *))s_forms[21])(0, &judge, NULL, NULL) > 0;
}
static uint16_t init(void) {
    tell("init");
    ((void (*)(int32_t, uintptr_t, Proc, void *))s_view[26])(4, s_extension, (Proc)&doc_did_open, NULL);
    return 1;
}

static int32_t shake_hands(uint32_t version, void *data) {
    struct Handshake *record = data;
    (void)version;
    record->extensionName = atom("Earlier");
    record->exportTables = &export_tables;
    record->replaceAndRegister = &replace_and_register;
    record->init = &init;
    return 1;
}

static int32_t set_up(uint32_t version, void *data) {
    struct Setup *record = data;
    if (record->version != version) return 0;
    s_core = record->core;
    s_extension = record->extension;
    s_lex = table("Lex", Version4);
    s_doc = table("DocModel", Version4);
    s_view = table("ScreenView", Version4);
    record->handshake = &shake_hands;
    return s_lex && s_doc && s_view;
}

/* A shared object's `main` has a shape of its own, which C would not let that name have. */
__attribute__((visibility("default"))) int32_t entry(uint32_t highest, uint32_t *agreed,
                                                     int32_t (**setup)(uint32_t, void *)) __asm__("main");
int32_t entry(uint32_t highest, uint32_t *agreed, int32_t (**setup)(uint32_t, void *)) {
    *agreed = highest < 0x00020000 ? highest : 0x00020000;
    *setup = &set_up;
    return 1;
}
