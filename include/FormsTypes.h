// Records of the forms plug-in that other plug-ins see: fields, texts, looks, borders, broadcasts, widget handlers.
// SPDX-License-Identifier: MIT
#pragma once

#include <type_traits>

#include "KRTypes.h"

/** The two words of flags that a field has: `which` of TSDMFieldGetFlags and TSDMFieldSetFlags. */
enum TSFlagWord : std::int32_t {
    /** `F`, a sum of DMAnnotFlag: the field's own dictionary alone has it, and only a widget's is drawn by it. */
    TSAnnotWord = 0,
    /** `Ff`, a sum of TSFieldFlag: inherited, and kept at the top of a group of same-named fields. */
    TSFieldWord = 1
};

/** Bits of `Ff`. What a bit above the low twelve means depends on the field's type. */
enum TSFieldFlag : std::uint32_t {
    TSFieldReadOnly = 0x1,
    TSFieldRequired = 0x2,
    TSFieldNoExport = 0x4,
    /** Private to this system: a change of the field makes no new appearance while it is set. */
    TSFieldDelay = 0x8,
    /** All that mean the same for every type. The others go when the type changes. */
    TSFieldFlagsOfAllTypes = 0xFFF,

    // Of text fields.
    TSFieldMultiLine = 0x1000,
    /** Shown as stars, and gone from the file at the next save. */
    TSFieldPassword = 0x2000,
    TSFieldFileSelect = 0x100000,
    TSFieldNoScroll = 0x800000,
    TSFieldComb = 0x1000000,
    TSFieldRichText = 0x2000000,
    /** Of choice fields as well. */
    TSFieldNoSpellCheck = 0x400000,

    // Of buttons.
    /** A click does not turn the radio button off. */
    TSFieldNoToggleToOff = 0x4000,
    /** Clear, with TSFieldPushButton clear: a check box. */
    TSFieldRadio = 0x8000,
    TSFieldPushButton = 0x10000,
    /** Radio buttons of one on-state go on and off together. */
    TSFieldRadiosInUnison = 0x2000000,

    // Of choice fields.
    /** Clear: a list box. */
    TSFieldCombo = 0x20000,
    /** The combo box takes text that is none of its options. */
    TSFieldComboEdit = 0x40000,
    TSFieldSorted = 0x80000,
    TSFieldMultiSelect = 0x200000,
    TSFieldCommitOnChange = 0x4000000
};

/** A field of a form. Valid until it is undefined or its document closes; never kept across a save. */
struct DMField;

/** The builder of an appearance stream. */
struct CStore;

/** What the bytes of a text mean. */
enum EStrEncoding : std::int32_t {
    EStrHost = 0,
    EStrPDFDoc = 1,
    /** Big-endian UCS-2 starting with the bytes 254, 255. */
    EStrUCS2 = 2,
    /** As a target: PDFDocEncoding if nothing is lost, else UCS-2. Never stored. */
    EStrText = 3,
    EStrShiftJIS = 4
};

/**
 * A text with its encoding. `bytes` comes from KRmalloc, belongs to the record and always ends in two zero bytes that
 * `length` does not count. An observer may put other text in: grow `bytes` with KRrealloc and set all four members.
 */
struct EStr {
    /** A EStrEncoding but EStrText. */
    std::int32_t encoding;
    char *bytes;
    /** In bytes, the mark of UCS-2 among them. */
    std::uint16_t length;
    /** Bytes that the block has room for, the two zero bytes among them. */
    std::uint16_t capacity;
};

/** Text look of a field (`DA` and `Q`). Lengths are points. Compared byte for byte: clear it before filling it. */
struct TextAppearance {
    /** `Tc` and `Tw`. */
    KRFixed charSpacing;
    KRFixed wordSpacing;
    /** Percent, 100.0 for none. */
    KRFixed hScale;
    /** `TL` and `Ts`. */
    KRFixed leading;
    KRFixed rise;
    /** Points; 0 means automatic. */
    KRFixed size;
    /** `Tm`. */
    KRFixedMatrix matrix;
    DMColorValue strokeColor;
    DMColorValue fillColor;
    /** `Tr`, 0 to 7. */
    std::uint16_t renderMode;
    /** 0 left, 1 centre, 2 right. */
    std::uint16_t quadding;
    /** Such as "Helvetica"; KRAtomNull unset. */
    KRAtom baseFont;
    /** Such as "Helv"; KRAtomNull unset. */
    KRAtom fontResource;
};
static_assert(std::has_unique_object_representations_v<TextAppearance>, "compared byte for byte");

/** Names of `S` in a border dictionary: `S`, `D`, `B`, `I`, `U`. */
enum TSBorderStyle : std::int32_t {
    TSBorderSolid = 0,
    TSBorderDashed = 1,
    TSBorderBeveled = 2,
    TSBorderInset = 3,
    TSBorderUnderline = 4
};

/** Border of a widget. Compared byte for byte. */
struct TSBorder {
    /** A TSBorderStyle. */
    std::int32_t style;
    /** Whole points. */
    std::int32_t width;
    /** Lengths of dashes and gaps in points; unused ones are 0. */
    std::int32_t dashCount;
    KRFixed dashes[10];
};
static_assert(std::has_unique_object_representations_v<TSBorder>, "compared byte for byte");

/** Masks of the entries of a form or field dictionary that are inherited. */
enum TSEntry : std::uint32_t {
    TSEntryDV = 1,
    TSEntryV = 2,
    TSEntryDA = 4,
    TSEntryOH = 8,
    TSEntryDR = 16,
    TSEntryQ = 32,
    /** The highest: loops over the entries run down from here. */
    TSEntryVT = 64
};

/** What every broadcast of the form carries; members that a broadcast has no use for are 0. */
struct TSFieldNotifyRec {
    DMDoc doc;
    DMField *field;
    /** Text of the value, in and out. */
    EStr *value;
    /** TSWidgetValidate: the text about to go in, in and out. */
    EStr *change;
    /** TSWidgetValidate: the range of the text that `change` replaces. */
    std::int32_t selStart;
    std::int32_t selEnd;
    /** Out: not 0 refuses. */
    std::uint32_t reject;
    /** TSFormEntryDidChange: sum of TSEntry, the form entries that changed. */
    std::uint32_t entries;
    /** 0. */
    KRWord reserved3;
    KRWord reserved4;
};

/** Indexes of the notification servers. */
enum TSServer : std::int32_t {
    /** `value` may be rewritten, `reject` refuses it. */
    TSValueWillChange = 0,
    /** It is stored; what depends on it is calculated here. */
    TSValueDidChange = 1,
    /** A document got a form. */
    TSFormDidCreate = 2,
    /** `entries` of the form dictionary changed. */
    TSFormEntryDidChange = 3,
    TSFormWillDestroy = 4,
    /** `field` got its first companion of the same name, and lost its last one. */
    TSFieldDidSplit = 5,
    TSFieldDidJoin = 6,
    /** What is typed or chosen may be rewritten in `change`, and refused. */
    TSWidgetValidate = 7,
    /** The focus goes from widget to widget; `reject` refuses. */
    TSWidgetWillEnter = 8,
    TSWidgetDidLeave = 9,
    /** `value` is what the widget will show, and may be rewritten. */
    TSFieldWillDisplay = 10,
    /** Data was submitted or imported. */
    TSFormDataDidMove = 11,
    TSServerCount = 12
};

/** Called with the broadcast's record and the observer's client data. Raising ends the broadcast. */
using TSNotifyProc = void (*)(void *record, void *clientData);
/** Called for the observers up to the one that raised. */
using TSNotifyFailureProc = void (*)(KRErrorCode code, void *record, void *clientData);

/** Something that a form's user should know of. All is the plug-in's, for the length of the call. */
struct TSFormWarning {
    DMDoc doc;
    /** Full name of the field as TSDMFieldGetName gives it; "" for the form as a whole. */
    const char *field;
    /** A sentence without a point, in the host's encoding. */
    const char *text;
};

/** What a document holds that does not outlive a change of the file. */
enum TSSeal : std::uint32_t {
    /** A signature that covers bytes of the file, or the form's word that there is one. */
    TSSealSignature = 0x1,
    /** The catalog's `Perms` `DocMDP`: the author's signature, which allows no changes or few. */
    TSSealCertificate = 0x2,
    /** `UR3` or `UR`: what some viewers let their users do with this very file. */
    TSSealUsageRights = 0x4,
    /** `XFA`: a second description of the form and its values, which this system does not follow. */
    TSSealXFA = 0x8
};

/** One field. False ends the walk. */
using TSFieldEnumProc = KRBool (*)(DMField *field, void *clientData);

/**
 * Bits of TSWidgetData::mixed: what differs between the widgets of a selection. CompareData of a handler sets them in
 * the first record; WriteData leaves alone what is set.
 */
enum TSMixed : std::uint32_t {
    /** Set by every comparison, so that a type is never written after one. */
    TSMixedType = 0x1,
    TSMixedTitle = 0x2,
    /** "Seen" tells of one that is transparent and one that is not. */
    TSMixedBackSeen = 0x4,
    TSMixedBackColor = 0x8,
    TSMixedBorderSeen = 0x10,
    TSMixedBorderColor = 0x20,
    TSMixedBorderStyle = 0x40,
    TSMixedBorderWidth = 0x80,
    TSMixedTextSeen = 0x100,
    TSMixedTextColor = 0x200,
    TSMixedFont = 0x400,
    TSMixedTextSize = 0x800,
    TSMixedReadOnly = 0x1000,
    TSMixedRequired = 0x4000,
    TSMixedUserName = 0x10000,
    TSMixedQuadding = 0x20000,
    /** Of the annotation flags hidden, print and no view. */
    TSMixedAnnotFlags = 0x40000
};

/** Data of a widget, the transfer format of authoring. Its handler puts a record of its own behind it. */
struct TSWidgetData {
    /** The widget type: "Text", "ComboBox", "ListBox", "Button", "CheckBox", "RadioButton" or a field type. */
    KRAtom type;
    /** Full field name in host encoding; owned. */
    char *title;
    /** The field's `TU` text; owned. */
    EStr *userName;
    /** Points. */
    KRFixedRect rect;
    DMColorValue borderColor;
    /** The colour of the annotation itself: always red. */
    DMColorValue annotColor;
    DMColorValue textColor;
    DMColorValue backColor;
    TSBorder border;
    /** Base font, such as "Helvetica". */
    KRAtom font;
    /** Points; 0 means automatic. */
    KRFixed textSize;
    /** A sum of DMAnnotFlag. */
    std::uint32_t annotFlags;
    /** A sum of TSFieldFlag. */
    std::uint32_t fieldFlags;
    /** 0 left, 1 centre, 2 right. */
    std::uint16_t quadding;
    /** Degrees. */
    std::uint16_t rotation;
    /** A sum of TSMixed: what differs across a selection; what is set is not written. */
    std::uint32_t mixed;
    /** Text of the field's value in host encoding, owned; null when it has none. */
    char *value;
    /** The handler's own record; owned. */
    void *extension;
};

/** What keeps a widget from being called by a name, or its data from being used. */
enum TSValidity : std::int32_t {
    TSValid = 0,
    /** Also a name of dots alone. */
    TSNameEmpty = 1,
    TSNameOfOtherType = 2,
    TSNameOfGroup = 3,
    TSNameBelowField = 4,
    TSFontsMixed = 5,
    TSNameNotRoman = 6,
    TSSizeOutOfRange = 7
};

/** Bits of `flags` of TSAddNameEntry and TSRemoveNameEntry. */
enum TSNameTreeFlags : std::uint32_t {
    /** Adding: destroys the value that is replaced. */
    TSNameDestroyOld = 0x02,
    /** Removing: destroys the value besides. */
    TSNameRemoveDestroy = 0x10,
    /** Removing: takes the entry out and leaves its value. */
    TSNameRemove = 0x20
};

/**
 * A widget type's operations. The order of the members is a contract. An empty slot means that there is nothing to do;
 * callers test first. The record belongs to the registrant and must outlive the plug-in. Places are device units of the
 * page view; `flags` is the sum of SCModifier held at the time, `clicks` 1 or, for the second of a double click, 2.
 */
struct SCWidgetHandler {
    /** Of this record in bytes. */
    std::uint32_t size;
    /** The registrant's. */
    void *userData;
    /** Not 0: clicks go through press tracking, and the widget takes no focus first. */
    std::uint16_t usesTracking;
    /** Not 0: no tab stop, no focus. */
    std::uint16_t noFocus;
    /** The type atom, key of the registry. */
    KRAtom (*GetType)(SCWidgetHandler *handler);
    /** Readable name, host text. A handler without this is refused. */
    void (*GetName)(SCWidgetHandler *handler, char *buffer, std::int32_t size);
    /** True: drawn; false lets the annotation handler draw the face. */
    KRBool (*Draw)(SCWidgetHandler *handler, DMAnnot annot, SCPageView view, KRBool focused);
    /** A key for the focused widget. */
    void (*DoKeyDown)(SCWidgetHandler *handler, DMAnnot annot, std::uint16_t key, std::uint32_t flags);
    /** A new record of what the widget is, for ReleaseData. */
    TSWidgetData *(*AcquireData)(SCWidgetHandler *handler, DMAnnot annot);
    /** Sets bits of TSMixed in the first record. */
    void (*CompareData)(SCWidgetHandler *handler, TSWidgetData *first, const TSWidgetData *other);
    /** Writes a record, all but what is mixed in it; it stays the caller's. Raises KRErrBadParam, KRErrDefineFailed. */
    void (*WriteData)(SCWidgetHandler *handler, DMAnnot annot, TSWidgetData *data);
    void (*reserved)();
    /** Frees a record of this handler. Null allowed. */
    void (*ReleaseData)(SCWidgetHandler *handler, TSWidgetData *data);
    /** Makes `AP` from `value` (or from the field when null). `state` is an on-state or KRAtomNull; `forced`: also when
     *  there is one. */
    void (*WriteAppearance)(SCWidgetHandler *handler, DMAnnot annot, KRAtom state, EStr *value, KRBool forced);
    /** Draws the mark of the focus, or takes it off. */
    void (*Select)(SCWidgetHandler *handler, DMAnnot annot, SCPageView view, KRBool on);
    /** The first button went down on the widget; and the second one, below. */
    void (*Click)(SCWidgetHandler *handler, DMAnnot annot, SCPageView view, std::int16_t x, std::int16_t y,
                  std::uint32_t flags, std::int16_t clicks);
    void (*RightClick)(SCWidgetHandler *handler, DMAnnot annot, SCPageView view, std::int16_t x, std::int16_t y,
                       std::uint32_t flags, std::int16_t clicks);
    /** The rectangle (points) was changed. */
    void (*Resize)(SCWidgetHandler *handler, DMAnnot annot, const KRFixedRect *rect);
    /** The view moved. */
    void (*Scroll)(SCWidgetHandler *handler, DMAnnot annot);
    /** The pointer is over the widget. True: the cursor was set. */
    KRBool (*AdjustCursor)(SCWidgetHandler *handler, DMAnnot annot, SCPageView view, std::int16_t x, std::int16_t y);
    /** Takes the focus. Without these two, the focused widget is the view's selected annotation. */
    void (*Focus)(SCWidgetHandler *handler, DMAnnot annot, SCPageView view);
    KRBool (*IsFocus)(SCWidgetHandler *handler, DMAnnot annot, SCPageView view);
};
