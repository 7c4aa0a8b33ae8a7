// Reading fields through the tables of include/.
// SPDX-License-Identifier: MIT
#include "cli/Field.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

#include "CoreHFT.h"
#include "DocModelHFT.h"
#include "FormsAuthoringHFT.h"
#include "PIFrame.h"
#include "cli/LimitOptions.h"
#include "cli/Text.h"

namespace jackdaw::cli {

namespace {

struct FlagWord {
    std::uint32_t bit;
    const char *word;
};
constexpr FlagWord s_commonWords[] = {
    {TSFieldReadOnly, "readonly"}, {TSFieldRequired, "required"}, {TSFieldNoExport, "noexport"}};
constexpr FlagWord s_textWords[] = {{TSFieldMultiLine, "multiline"},   {TSFieldPassword, "password"},
                                    {TSFieldFileSelect, "fileselect"}, {TSFieldNoSpellCheck, "nospellcheck"},
                                    {TSFieldNoScroll, "noscroll"},     {TSFieldComb, "comb"},
                                    {TSFieldRichText, "richtext"}};
constexpr FlagWord s_buttonWords[] = {{TSFieldNoToggleToOff, "notoggletooff"},
                                      {TSFieldRadiosInUnison, "radiosinunison"}};
constexpr FlagWord s_choiceWords[] = {{TSFieldComboEdit, "editable"},
                                      {TSFieldSorted, "sorted"},
                                      {TSFieldMultiSelect, "multiselect"},
                                      {TSFieldNoSpellCheck, "nospellcheck"},
                                      {TSFieldCommitOnChange, "commitonchange"}};
constexpr FlagWord s_widgetWords[] = {
    {DMAnnotInvisible, "invisible"}, {DMAnnotHidden, "hidden"}, {DMAnnotNoView, "noview"}};

/** Steps up `Parent` that are taken. Set before the first command runs, and asked for each field. */
std::int64_t InheritanceDepth() {
    static const std::int64_t s_depth = LimitNamed("inheritance-depth");
    return s_depth;
}

bool IsDict(LexObj obj) {
    return LexObjGetType(obj) == LexDict;
}

LexObj Get(LexObj dict, const char *key) {
    return IsDict(dict) ? LexDictGet(dict, AtomOf(key)) : LexNullObj;
}

bool IsName(LexObj obj, const char *text) {
    return LexObjGetType(obj) == LexName && LexNameValue(obj) == AtomOf(text);
}

std::uint32_t InheritedFlags(LexObj dict) {
    LexObj flags = InheritedValue(dict, AtomOf("Ff"));
    return LexObjGetType(flags) == LexInteger ? static_cast<std::uint32_t>(LexIntegerValue(flags)) : 0;
}

FieldType ButtonType(std::uint32_t flags) {
    if (flags & TSFieldPushButton) return FieldType::Button;
    return flags & TSFieldRadio ? FieldType::RadioButton : FieldType::CheckBox;
}

// The dictionaries of a field's widgets: its own, or its kids that have no title.
std::vector<LexObj> WidgetsOf(LexObj dict) {
    LexObj kids = Get(dict, "Kids");
    if (LexObjGetType(kids) != LexArray) return {dict};
    std::vector<LexObj> widgets;
    for (std::int32_t i = 0; i < LexArrayLength(kids); ++i) {
        LexObj kid = LexArrayGet(kids, i);
        if (IsDict(kid) && LexObjGetType(Get(kid, "T")) == LexNull) widgets.push_back(kid);
    }
    return widgets;
}

// A widget handed out by name is the group's kid or its top; the group is asked.
LexObj GroupOf(LexObj dict) {
    for (std::int64_t depth = 0; depth < InheritanceDepth() && LexObjGetType(Get(dict, "T")) == LexNull; ++depth) {
        LexObj parent = Get(dict, "Parent");
        if (!IsDict(parent)) break;
        dict = parent;
    }
    return dict;
}

std::string OnStateOf(LexObj widget) {
    LexObj normal = Get(Get(widget, "AP"), "N");
    std::string state;
    if (!IsDict(normal)) return state;
    const auto take = [](LexObj key, LexObj, void *found) -> KRBool {
        if (LexNameValue(key) == AtomOf("Off")) return true;
        *static_cast<std::string *>(found) = TextOfObject(key);
        return false;
    };
    LexObjEnum(normal, take, &state);
    return state;
}

Option OptionOf(LexObj entry) {
    if (LexObjGetType(entry) != LexArray) {
        const std::string text = TextOfObject(entry);
        return {text, text, entry};
    }
    const std::string first = TextOfObject(LexArrayGet(entry, 0));
    const std::string second = TextOfObject(LexArrayGet(entry, 1));
    return {first, second.empty() ? first : second, LexArrayGet(entry, 0)};
}

std::vector<Option> ChoiceOptions(LexObj opt) {
    std::vector<Option> options;
    if (LexObjGetType(opt) != LexArray) return options;
    for (std::int32_t i = 0; i < LexArrayLength(opt); ++i) options.push_back(OptionOf(LexArrayGet(opt, i)));
    return options;
}

// `Opt` of a button names its widgets in their order.
std::vector<Option> ButtonOptions(LexObj dict) {
    std::vector<Option> options;
    std::unordered_set<std::string> known;
    const std::vector<Option> texts = ChoiceOptions(InheritedValue(dict, AtomOf("Opt")));
    const std::vector<LexObj> widgets = WidgetsOf(dict);
    for (std::size_t i = 0; i < widgets.size(); ++i) {
        const std::string state = OnStateOf(widgets[i]);
        if (state.empty() || !known.insert(state).second) continue;
        options.push_back({state, i < texts.size() ? texts[i].display : state, LexNullObj});
    }
    return options;
}

template <std::size_t N>
void AddWords(std::vector<std::string> &words, std::uint32_t flags, const FlagWord (&table)[N]) {
    for (const FlagWord &flag : table) {
        if (flags & flag.bit) words.push_back(flag.word);
    }
}

/** Fields under way, found again by the address of their name: same-named fields share it. */
struct Listing {
    std::vector<Field> fields;
    std::unordered_map<const char *, std::size_t> byName;

    Field &Of(DMField *handle) {
        const char *name = Forms::TSDMFieldGetName(handle);
        const auto [place, fresh] = byName.emplace(name, fields.size());
        if (fresh) {
            Field field;
            field.handle = handle;
            field.name = TextOfName(name);
            field.type = TypeOfField(handle);
            fields.push_back(std::move(field));
        }
        return fields[place->second];
    }
};

void ListPage(DMDoc doc, std::int32_t number, Listing &listing) {
    const KRAtom widget = AtomOf("Widget");
    DMPage page = DMDocAcquirePage(doc, number);
    const KRErrorCode code = Protect([&] {
        for (std::int32_t i = 0; i < DMPageGetNumAnnots(page); ++i) {
            DMAnnot annot = DMPageGetAnnot(page, i);
            if (!DMAnnotIsValid(annot) || DMAnnotGetSubtype(annot) != widget) continue;
            DMField *field = Forms::TSDMFieldFromLexObj(DMAnnotGetLexObj(annot));
            if (!Forms::TSDMFieldIsValid(field)) continue;
            WidgetPlace place{number + 1, {}};
            Protect([&] { DMAnnotGetRect(annot, &place.rect); });
            listing.Of(field).widgets.push_back(place);
        }
    });
    DMPageRelease(page);
    RaiseIf(code);
}

KRBool ListRest(DMField *field, void *listing) {
    static_cast<Listing *>(listing)->Of(field);
    return true;
}

KRBool TakeName(DMField *field, void *names) {
    static_cast<std::vector<std::string> *>(names)->push_back(TextOfName(Forms::TSDMFieldGetName(field)));
    return true;
}

} // namespace

KRAtom AtomOf(const char *text) {
    return KRAtomFromString(text);
}

LexObj InheritedValue(LexObj dict, KRAtom key) {
    const KRAtom parent = AtomOf("Parent");
    for (std::int64_t depth = 0; depth < InheritanceDepth() && IsDict(dict); ++depth) {
        LexObj value = LexDictGet(dict, key);
        if (LexObjGetType(value) != LexNull) return value;
        dict = LexDictGet(dict, parent);
    }
    return LexNullObj;
}

const char *WordOfType(FieldType type) {
    switch (type) {
    case FieldType::Text:
        return "text";
    case FieldType::Button:
        return "button";
    case FieldType::CheckBox:
        return "checkbox";
    case FieldType::RadioButton:
        return "radiobutton";
    case FieldType::ComboBox:
        return "combobox";
    case FieldType::ListBox:
        return "listbox";
    case FieldType::Signature:
        return "signature";
    case FieldType::Unknown:
        break;
    }
    return "unknown";
}

bool IsTypeWord(const std::string &word) {
    for (int type = 0; type <= static_cast<int>(FieldType::Unknown); ++type) {
        if (word == WordOfType(static_cast<FieldType>(type))) return true;
    }
    return false;
}

FieldType TypeOfField(DMField *field) {
    LexObj dict = Forms::TSDMFieldGetLexObj(field);
    LexObj type = InheritedValue(dict, AtomOf("FT"));
    if (IsName(type, "Tx")) return FieldType::Text;
    const std::uint32_t flags = Forms::TSDMFieldGetFlags(field, TSFieldWord);
    if (IsName(type, "Btn")) return ButtonType(flags);
    if (IsName(type, "Ch")) return flags & TSFieldCombo ? FieldType::ComboBox : FieldType::ListBox;
    return IsName(type, "Sig") ? FieldType::Signature : FieldType::Unknown;
}

std::vector<Option> OptionsOfField(DMField *field, FieldType type) {
    LexObj group = GroupOf(Forms::TSDMFieldGetLexObj(field));
    if (type == FieldType::CheckBox || type == FieldType::RadioButton) return ButtonOptions(group);
    if (type == FieldType::ComboBox || type == FieldType::ListBox)
        return ChoiceOptions(InheritedValue(group, AtomOf("Opt")));
    return {};
}

std::vector<std::string> FlagWords(DMField *field, FieldType type) {
    LexObj group = GroupOf(Forms::TSDMFieldGetLexObj(field));
    const std::uint32_t flags = InheritedFlags(group);
    std::vector<std::string> words;
    AddWords(words, flags, s_commonWords);
    if (type == FieldType::Text) AddWords(words, flags, s_textWords);
    if (type == FieldType::RadioButton || type == FieldType::CheckBox) AddWords(words, flags, s_buttonWords);
    if (type == FieldType::ComboBox || type == FieldType::ListBox) AddWords(words, flags, s_choiceWords);
    const std::vector<LexObj> widgets = WidgetsOf(group);
    LexObj shown = widgets.empty() ? LexNullObj : Get(widgets.front(), "F");
    if (LexObjGetType(shown) == LexInteger)
        AddWords(words, static_cast<std::uint32_t>(LexIntegerValue(shown)), s_widgetWords);
    return words;
}

std::vector<std::string> ValueTexts(LexObj value) {
    if (LexObjGetType(value) == LexNull) return {};
    if (LexObjGetType(value) != LexArray) return {TextOfObject(value)};
    std::vector<std::string> texts;
    for (std::int32_t i = 0; i < LexArrayLength(value); ++i) texts.push_back(TextOfObject(LexArrayGet(value, i)));
    return texts;
}

std::optional<std::int32_t> MaxLengthOf(DMField *field) {
    LexObj length = InheritedValue(Forms::TSDMFieldGetLexObj(field), AtomOf("MaxLen"));
    if (LexObjGetType(length) != LexInteger || LexIntegerValue(length) <= 0) return std::nullopt;
    return LexIntegerValue(length);
}

std::vector<Field> ListFields(DMDoc doc) {
    Listing listing;
    // Every page in turn, though one of them may be broken.
    for (std::int32_t page = 0; page < DMDocGetNumPages(doc); ++page) Protect([&] { ListPage(doc, page, listing); });
    const std::size_t onPages = listing.fields.size();
    Forms::TSDMDocEnumDMFields(doc, /*terminalOnly*/ true, /*firstOfNameOnly*/ true, &ListRest, &listing);
    const auto byName = [](const Field &a, const Field &b) { return a.name < b.name; };
    std::sort(listing.fields.begin() + static_cast<std::ptrdiff_t>(onPages), listing.fields.end(), byName);
    return std::move(listing.fields);
}

std::vector<std::string> FieldNames(DMDoc doc) {
    std::vector<std::string> names;
    Forms::TSDMDocEnumDMFields(doc, /*terminalOnly*/ true, /*firstOfNameOnly*/ true, &TakeName, &names);
    std::sort(names.begin(), names.end());
    return names;
}

DMField *FindField(DMDoc doc, const std::string &name) {
    DMField *field = Forms::TSDMDocGetDMFieldFromName(doc, BytesOfText(name).c_str());
    return field ? field : Forms::TSDMDocGetDMFieldFromName(doc, name.c_str());
}

bool BindForms() {
    if (!gFormsHFT) gFormsHFT = KRGetHFT(AtomOf(FormsHFTName), FormsHFTVersion);
    if (!gFormsAuthoringHFT) gFormsAuthoringHFT = KRGetHFT(AtomOf(FormsAuthoringHFTName), FormsAuthoringHFTVersion);
    return gFormsHFT && gFormsAuthoringHFT;
}

} // namespace jackdaw::cli
