// What the command line knows of a field, read from its dictionary through the tables of include/.
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "FormsHFT.h"
#include "LexHFT.h"

namespace jackdaw::cli {

enum class FieldType { Text, Button, CheckBox, RadioButton, ComboBox, ListBox, Signature, Unknown };

/** The word for a type, as `fields --json` has it. */
const char *WordOfType(FieldType type);

/** A word that WordOfType gives. */
bool IsTypeWord(const std::string &word);

/** A choice, or an on-state with the text that it stands for. */
struct Option {
    std::string exported;
    std::string display;
    /** The export value as the form holds it; null for on-states. A value is recognised by its very bytes. */
    LexObj object;
};

struct WidgetPlace {
    /** From 1. */
    std::int32_t page;
    KRFixedRect rect;
};

struct Field {
    DMField *handle = nullptr;
    std::string name;
    FieldType type = FieldType::Unknown;
    std::vector<WidgetPlace> widgets;
};

/** A value under `key`, the field's own or inherited. */
LexObj InheritedValue(LexObj dict, KRAtom key);
KRAtom AtomOf(const char *text);

FieldType TypeOfField(DMField *field);
/** Export and shown texts of a choice field; on-states of a button with the texts that `Opt` gives them. */
std::vector<Option> OptionsOfField(DMField *field, FieldType type);
/** Flags as words: of the field, then of its first widget. */
std::vector<std::string> FlagWords(DMField *field, FieldType type);
/** Text of a value of this field; none for null. Several values are several texts. */
std::vector<std::string> ValueTexts(LexObj value);
/** `MaxLen`, if there is one. */
std::optional<std::int32_t> MaxLengthOf(DMField *field);

/** Fields of a document by page and annotation order; fields without a widget last. */
std::vector<Field> ListFields(DMDoc doc);
/** Full names of all fields, for messages. */
std::vector<std::string> FieldNames(DMDoc doc);
/** The field of a full name; null. */
DMField *FindField(DMDoc doc, const std::string &name);
/** Whether the table "Forms" is here; fetches it. */
bool BindForms();

} // namespace jackdaw::cli
