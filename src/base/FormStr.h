// The atoms of the words that the plug-in uses, and the entries that the form model tracks.
//
// TessellaKRAtoms interns the set once, before anything else runs; the variables never change afterwards. A variable
// is named after the role of its word, so several may stand for one text: Align_K, Always_K and A_K are all "A". One
// name is laid down and misleads: docID_K has nothing to do with a document's `ID`, it is the form's `NeedAppearances`.
// SPDX-License-Identifier: MIT
#pragma once

#include "FormsTypes.h"

// clang-format off
/** X(variable, text) for the whole set, in the order of interning. */
#define TESSELLA_ATOMS(X) \
    X(_Off_K, "_Off") X(A_K, "A") X(AA_K, "AA") X(Tessella_K, "Tessella") X(Align_K, "A") X(Always_K, "A") \
    X(AltCaption_K, "AC") X(AltIcon_K, "IX") X(Anamorphic_K, "A") X(Annot_K, "Annot") X(Annotation_K, "Annotation") \
    X(Annots_K, "Annots") X(Appearance_K, "AP") X(APRef_K, "APRef") X(arrayInfo_K, "AI") X(AS_K, "AS") \
    X(Ascent_K, "Ascent") X(ASCII85Decode_K, "ASCII85Decode") X(AskForm_K, "AskForm") X(AskFormURL_K, "AskFormURL") \
    X(Background_K, "BG") X(Base_K, "Base") X(BaseFont_K, "BaseFont") X(BBox_K, "BBox") X(Beads_K, "B") \
    X(Beveled_K, "B") X(Border_K, "Border") X(BorderCol_K, "BC") X(BorderStyle_K, "BS") X(Button_K, "Button") \
    X(Btn_K, "Btn") X(C_K, "C") X(CalcOrder_K, "CO") X(Calculate_K, "C") X(CapHeight_K, "CapHeight") \
    X(Caption_K, "CA") X(CC_K, "CC") X(CheckBox_K, "CheckBox") X(children_K, "Kids") X(Choice_K, "Ch") \
    X(CIDFontType0_K, "CIDFontType0") X(CIDSystemInfo_K, "CIDSystemInfo") X(CL_K, "CL") X(CS_K, "CS") \
    X(Close_K, "C") X(CoBO_K, "CoBO") X(CoBl_K, "CoBo") X(ComboBox_K, "ComboBox") X(Contents_K, "Contents") \
    X(CoOb_K, "CoOb") X(CourierBoldOblique_K, "Courier-BoldOblique") X(CourierBold_K, "Courier-Bold") \
    X(CourierOblique_K, "Courier-Oblique") X(Courier_K, "Courier") X(Cour_K, "Cour") X(CR_K, "CR") \
    X(CropBox_K, "CropBox") X(Custom_K, "Custom") X(D_K, "D") X(DashArray_K, "D") X(Dashed_K, "D") \
    X(Date_K, "Date") X(DC_K, "DC") X(default_K, "DV") X(defRes_K, "DR") X(DescendantFonts_K, "DescendantFonts") \
    X(Descent_K, "Descent") X(Dest_K, "Dest") X(docID_K, "NeedAppearances") X(DOS_K, "DOS") X(Dur_K, "Dur") \
    X(DW_K, "DW") X(EF_K, "EF") X(Encoding_K, "Encoding") X(Gaudy_K, "Gaudy") X(FaceDown_K, "D") \
    X(FaceNormal_K, "N") X(FaceRollOver_K, "R") X(FDF_K, "FDF") X(Fields_K, "Fields") X(FileEmbed_K, "FileEmbed") \
    X(FileSpec_K, "F") X(Filter_K, "Filter") X(FirstPage_K, "FP") X(Flags_K, "Flags") X(flagsA_Clr_K, "ClrF") \
    X(flagsA_K, "F") X(flagsA_Set_K, "SetF") X(flagsF_Clr_K, "ClrFf") X(flagsF_K, "Ff") X(flagsF_Set_K, "SetFf") \
    X(FlagsWF_K, "Flags") X(FlateDecode_K, "FlateDecode") X(Font_K, "Font") X(FontBBox_K, "FontBBox") \
    X(FontDescriptor_K, "FontDescriptor") X(FontName_K, "FontName") X(Form_K, "Form") X(Format_K, "F") \
    X(formFields_K, "Fields") X(FormType_K, "FormType") X(FRM_K, "FRM") X(FSinFileSpec_K, "FS") X(FT_K, "FT") \
    X(General_K, "General") X(H_K, "H") X(Hand_K, "Hand") X(HeBO_K, "HeBO") X(HeBl_K, "HeBo") \
    X(HelveticaBoldOblique_K, "Helvetica-BoldOblique") X(HelveticaBold_K, "Helvetica-Bold") \
    X(HelveticaOblique_K, "Helvetica-Oblique") X(Helvetica_K, "Helvetica") X(Helv_K, "Helv") X(HeOb_K, "HeOb") \
    X(Hid_K, "Hid") X(Hide_K, "Hide") X(Highlight_K, "H") X(Icon_K, "I") X(Icons_K, "AP") X(IF_K, "IF") \
    X(ImportData_K, "ImportData") X(Inset_K, "I") X(Invert_K, "I") X(ItalicAngle_K, "ItalicAngle") \
    X(JavaScript_K, "JavaScript") X(JS_K, "JS") X(KaGo_K, "KaGo") X(KaMi_K, "KaMi") \
    X(KanjiGothic_K, "HeiseiKakuGo-W5-UniJIS-UCS2-H") X(KanjiMincho_K, "HeiseiMin-W3-UniJIS-UCS2-H") \
    X(KanjiGothicDescendant_K, "HeiseiKakuGo-W5") X(KanjiMinchoDescendant_K, "HeiseiMin-W3") X(Keystroke_K, "K") \
    X(Kids_K, "Kids") X(LastPage_K, "LP") X(LC_K, "LC") X(Length_K, "Length") X(Limits_K, "Limits") \
    X(ListBox_K, "ListBox") X(LL_K, "LL") X(LR_K, "LR") X(LZWDecode_K, "LZWDecode") X(Mac_K, "Mac") \
    X(MakerDict_K, "MK") X(Matrix_K, "Matrix") X(maxLen_K, "MaxLen") X(MediaBox_K, "MediaBox") X(MouseDown_K, "D") \
    X(MouseEnter_K, "E") X(MouseExit_K, "X") X(MouseUp_K, "U") X(Movie_K, "Movie") X(Multiple_K, "Multiple") \
    X(Name_K, "Name") X(Names_K, "Names") X(Never_K, "N") X(Next_K, "Next") X(NextPage_K, "NP") X(nKids_K, "nKids") \
    X(None_K, "N") X(Number_K, "Number") X(Off_K, "Off") X(On_K, "On") X(Open_K, "O") X(options_K, "Opt") \
    X(Ordering_K, "Ordering") X(origHeight_K, "OH") X(Outline_K, "O") X(Page_K, "Page") X(PageFromAnnot_K, "P") \
    X(Pages_K, "Pages") X(Panose_K, "Panose") X(Params_K, "P") X(parent_K, "Parent") X(PDF_K, "PDF") \
    X(PDFDocEncoding_K, "PDFDocEncoding") X(Percent_K, "Percent") X(Position_K, "TP") X(PrevPage_K, "PP") \
    X(ProcSet_K, "ProcSet") X(Proportional_K, "P") X(Push_K, "P") X(PZ_K, "PZ") X(quadding_K, "Q") \
    X(RadioButton_K, "RadioButton") X(Rect_K, "Rect") X(Registry_K, "Registry") X(Rename_K, "Rename") \
    X(ResetForm_K, "ResetForm") X(Resources_K, "Resources") X(RollCaption_K, "RC") X(RollIcon_K, "RI") \
    X(Rot_K, "R") X(Rotate_K, "Rotate") X(ScaleWhen_K, "SW") X(Scaling_K, "S") X(SetState_K, "SetState") \
    X(Shift_JIS_K, "Shift-JIS") X(Sig_K, "Sig") X(Solid_K, "S") X(spec_K, "Tessella") X(Special_K, "Special") \
    X(State_K, "AS") X(Status_K, "Status") X(StemV_K, "StemV") X(Style_K, "Style") X(SubmitForm_K, "SubmitForm") \
    X(SubmitName_K, "TM") X(Subtype_K, "Subtype") X(Supplement_K, "Supplement") X(Symbol_K, "Symbol") \
    X(Symb_K, "Symb") X(S_K, "S") X(textApp_K, "DA") X(T_K, "T") X(Tab_K, "T") X(Target_K, "T") \
    X(Template_K, "Template") X(Templates_K, "Templates") X(TempOn_K, "$On") X(Thumb_K, "Thumb") X(Text_K, "Text") \
    X(TiBI_K, "TiBI") X(TiBo_K, "TiBo") X(TiIt_K, "TiIt") X(Time_K, "Time") \
    X(TimesBoldItalic_K, "Times-BoldItalic") X(TimesBold_K, "Times-Bold") X(TimesItalic_K, "Times-Italic") \
    X(TimesRoman_K, "Times-Roman") X(TiRo_K, "TiRo") X(Toggle_K, "T") X(TooBig_K, "B") X(TooSmall_K, "S") \
    X(topIndex_K, "TI") X(Trans_K, "Trans") X(TRef_K, "TRef") X(Tx_K, "Tx") X(TY_K, "TY") X(Type0_K, "Type0") \
    X(Type1_K, "Type1") X(Type_K, "Type") X(UC_K, "UC") X(UserName_K, "TU") X(Underline_K, "U") \
    X(KanjiEncoding_K, "UniJIS-UCS2-H") X(UL_K, "UL") X(Unix_K, "Unix") X(UR_K, "UR") X(URI_K, "URI") \
    X(URL_K, "URL") X(Validate_K, "V") X(value_K, "V") X(volatile_K, "$Vo") X(VT_K, "VT") X(W_K, "W") \
    X(waste_K, "$Wa") X(Widget_K, "Widget") X(Width_K, "W") X(XHeight_K, "XHeight") X(XObject_K, "XObject") \
    X(ZaDb_K, "ZaDb") X(ZapfDingbats_K, "ZapfDingbats")
// clang-format on

#define TESSELLA_DECLARE_ATOM(variable, text) extern KRAtom variable;
TESSELLA_ATOMS(TESSELLA_DECLARE_ATOM)
#undef TESSELLA_DECLARE_ATOM

/** Interns the set. */
void TessellaKRAtoms();

/** Key of a TSEntry; KRAtomNull for anything but one of the seven masks, sums of them included. */
KRAtom Entry_to_Name(std::uint32_t mask);
/** TSEntry of a key; 0 for any other atom. */
std::uint32_t Name_to_Entry(KRAtom name);
