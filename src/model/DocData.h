// The script record of a document: its switches, its calculation list, and the places where the script engine's objects
// of that document hang. The record is made at first use, with or without an engine.
//
// What the form needs of the layers above it, scripts and data exchange, stands here as one record of procedures that
// they install at start. An empty procedure means that the layer is not there; the form works without.
// SPDX-License-Identifier: MIT
#pragma once

#include "DocModelHFT.h"
#include "FormsTypes.h"
#include "LexHFT.h"
#include "model/DocStamp.h"

struct TSCalcArray;

struct TJSDocData {
    TJSDocData *next;
    /** The view; null until TJSDocInit, as a document need not have one. */
    SCDoc scDoc;
    /** Key of the record. */
    DMDoc dmDoc;
    /** The engine's context and the document's script object; the engine's layer sets and drops them. */
    void *cx;
    void *docObj;
    /** Working calculation order, made on demand; owned. */
    TSCalcArray *calcArray;
    /** The fields have yet to be loaded. Starts true; true again after a save that drops the records. */
    bool needLoadFields;
    /** Appearances wait while this is set. Starts false. */
    bool delay;
    /** Changes of values run calculations. Starts true. */
    bool calculate;
    DocStamp stamp;
};

/** What the layers above the model install. Members are called if not null. */
struct TJSDocSeams {
    /** Before the search for a record, at every TJSGetData: the engine loads its script library at the first. */
    void (*willGetData)();
    /** A new record: the engine hangs in `cx` and `docObj`. False: no record can be had. */
    bool (*attachEngine)(TJSDocData *data);
    /** The view is known: run the document-level scripts. */
    void (*runDocumentScripts)(TJSDocData *data);
    /** The document closes: forget what scripts subscribed for it. `data` may be null. */
    void (*forgetSubscriptions)(SCDoc view, TJSDocData *data);
    /** The record goes: unroot and drop `docObj`. */
    void (*dropEngineObjects)(TJSDocData *data);
    /** Compiles a text and keeps the result for the field's calculations; an empty one ends them. False: no script. */
    bool (*compileCalculation)(DMDoc doc, DMField *field, EStr *text);
    /** The field has a compiled calculation script. */
    bool (*hasCalculateScript)(DMField *field);
    /** For form actions: a form came up in a view, after its scripts ran; a view closes, before its scripts go. */
    void (*formDidOpen)(SCDoc view);
    void (*formWillClose)(SCDoc view);
    /** Copies the document-level scripts of `source` that `target` has no namesakes of. */
    void (*copyDocumentScripts)(DMDoc source, DMDoc target);
};
extern TJSDocSeams gDocSeams;

/** The document's record, made when there is none; null for a null document and when the engine fails. */
TJSDocData *TJSGetData(DMDoc doc);
/** The record, or null when there is none. Makes nothing and loads no scripts. */
TJSDocData *TJSFindData(DMDoc doc);

/** Takes the record off the list and frees it, with what the engine hung in it. */
void TJSDropData(TJSDocData *data);

// What scripts switch on their document, and an import for its length.

/** Changes of values run calculations; true when the document has no record. */
bool TJSDocGetCalculate(DMDoc doc);
void TJSDocSetCalculate(DMDoc doc, bool calculate);
/** Appearances wait; false when the document has no record. */
bool TJSDocGetDelay(DMDoc doc);
void TJSDocSetDelay(DMDoc doc, bool delay);
