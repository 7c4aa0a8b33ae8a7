// The catalogue of texts, one line a text: number, resource key, English default. Numbers are part of the design; they
// never change meaning. Texts with placeholders keep them in order in every translation. In menu titles "&" marks the
// mnemonic; in file filters "|" stands between entries and "||" at the end.
// SPDX-License-Identifier: MIT
#pragma once

// clang-format off
/** M(number, key, text) for a text, E(number) for a row that belongs to the about box and is empty here. */
#define MD_MESSAGE_LIST(M, E) \
    M(0, realVersion, "") \
    M(1, genericString, "%s") \
    M(2, language, "ENU") \
    M(3, fullName, "Jackdaw Forms") \
    E(4) E(5) E(6) E(7) E(8) E(9) E(10) E(11) E(12) E(13) E(14) E(15) E(16) E(17) E(18) E(19) E(20) \
    M(21, of, "of %ld pages.") \
    M(22, errorPageRange, "Please enter a valid page range.") \
    M(23, outof, "%ld out of %ld") \
    M(24, browseAppearance, "Choose a New Appearance File") \
    M(25, browsePdf, "Choose a PDF File") \
    M(26, widgetButton, "Button") \
    M(27, widgetText, "Text") \
    M(28, widgetCombo, "Combo Box") \
    M(29, widgetListBox, "List Box") \
    M(30, widgetRadio, "Radio Button") \
    M(31, widgetCheckbox, "Check Box") \
    M(32, widgetSignature, "Signature") \
    M(33, triggerPageOpen, "Page Open") \
    M(34, triggerPageClose, "Page Close") \
    M(35, triggerMouseUp, "Mouse Up") \
    M(36, triggerMouseDown, "Mouse Down") \
    M(37, triggerMouseEnter, "Mouse Enter") \
    M(38, triggerMouseExit, "Mouse Exit") \
    M(39, triggerValidate, "Validate") \
    M(40, triggerCompute, "Calculate") \
    M(41, triggerKeystroke, "Keystroke") \
    M(42, triggerFormat, "Format") \
    M(43, submitForm, "Submit Form") \
    M(44, resetForm, "Reset Form") \
    M(45, errorBadFdf, "Invalid FDF") \
    M(46, errorLacksFKey, \
      "Unable to locate the form, because the FDF lacks an /F key. If the FDF came back as a result of a " \
      "submit from a PDF form, then the URL is probably missing \"#FDF\" at the end.") \
    M(47, errorExportFdf, "Error during export of FDF") \
    M(48, errorSubmitFdf, "Error opening URL to submit this form") \
    M(49, errorSubmFromBrowser, "You need to be running inside a web browser in order to submit this form") \
    M(50, errorFdfFormNf, "The FDF specifies a bad URL for the form: \"%s\"") \
    M(51, errorFdfFormNfBrowse, \
      "The form \"%s\", specified within FDF, was not found. Would you like to browse for it?") \
    M(52, errorFdfNf, "FDF \"%s\" was not found. Would you like to browse for it?") \
    M(53, errorReqdFld, "The required field, \"%s\", was found empty during export.") \
    M(54, errorSubmitFailed, "Submission of the form failed.") \
    M(55, javascriptSerror, "JavaScript error in %s script of field \"%s\" at line %d:\n\t%s\n") \
    M(56, javascriptFerror, "JavaScript error in file %s at line %d:\n\t%s\n") \
    M(57, javascriptLerror, " at line ") \
    M(58, javascriptGerror, "JavaScript Error at line %d:\n\t%s\n") \
    M(59, jserrorInvalidargs, "Invalid arguments for function: %s.%s.\n") \
    M(60, jserrorNobrowser, "You need to be running inside a web browser in order to submit this form.") \
    M(61, jserrorInvalidtype, "Failed to convert parameter %d to type %s.\n") \
    M(62, jserrorInvalidpropertyset, "Invalid or unknown property, set not possible.\n") \
    M(63, jserrorInvalidpropertyget, "Invalid or unknown property, get not possible.\n") \
    M(64, jserrorInvalidGlobalpr, "Invalid property %s.%s.\n") \
    M(65, jserrorGeneral, "Operation failed.\n") \
    M(66, jserrorPostoutfailload, "PostOut plug_in failed to load.\n") \
    M(67, jserrorPostoutnotsupport, \
      "%s.%s is not supported for this configuration, including Perusal, Macintosh or Unix.\n") \
    M(68, jswarningCancelscriptexecution, \
      "You are in the middle of loading plugin or document scripts.\nStopping this operation may lead to " \
      "JavaScript errors.\nWould you like to continue loading the JavaScripts?") \
    M(69, importData, "Import Form Data") \
    M(70, selectFile, "Select File") \
    M(71, selectFdf, "Select File Containing Form Data") \
    M(72, exportFile, "Export Form Data As") \
    M(73, pdfFilters, "Jackdaw (*.pdf)|*.pdf|All Files (*.*)|*.*||") \
    M(74, fdfFilters, "Form Data (*.fdf)|*.fdf|All Files (*.*)|*.*||") \
    M(75, allFiles, "All Files") \
    M(76, six, "6") \
    M(77, eight, "8") \
    M(78, nine, "9") \
    M(79, ten, "10") \
    M(80, twelve, "12") \
    M(81, fourteen, "14") \
    M(82, eighteen, "18") \
    M(83, actionShowhide, "Show/Hide Field") \
    M(84, actionJavascript, "JavaScript") \
    M(85, longJan, "January") \
    M(86, longFeb, "February") \
    M(87, longMar, "March") \
    M(88, longApr, "April") \
    M(89, longMay, "May") \
    M(90, longJun, "June") \
    M(91, longJul, "July") \
    M(92, longAug, "August") \
    M(93, longSep, "September") \
    M(94, longOct, "October") \
    M(95, longNov, "November") \
    M(96, longDec, "December") \
    M(97, shortJan, "Jan") \
    M(98, shortFeb, "Feb") \
    M(99, shortMar, "Mar") \
    M(100, shortApr, "Apr") \
    M(101, shortMay, "May") \
    M(102, shortJun, "Jun") \
    M(103, shortJul, "Jul") \
    M(104, shortAug, "Aug") \
    M(105, shortSep, "Sep") \
    M(106, shortOct, "Oct") \
    M(107, shortNov, "Nov") \
    M(108, shortDec, "Dec") \
    M(109, longMon, "Monday") \
    M(110, longTue, "Tuesday") \
    M(111, longWed, "Wednesday") \
    M(112, longThu, "Thursday") \
    M(113, longFri, "Friday") \
    M(114, longSat, "Saturday") \
    M(115, longSun, "Sunday") \
    M(116, shortMon, "Mon") \
    M(117, shortTue, "Tue") \
    M(118, shortWed, "Wed") \
    M(119, shortThu, "Thu") \
    M(120, shortFri, "Fri") \
    M(121, shortSat, "Sat") \
    M(122, shortSun, "Sun") \
    M(123, jsconsoleTitle, "JavaScript Console") \
    M(124, off, "No") \
    M(125, on, "Yes") \
    M(126, helpWidgetTool, "Form Tool") \
    M(127, multipleSel, "Since you have selected more than one field, only the following properties can be changed:") \
    M(128, errorNullname, "You must define a name for a field.") \
    M(129, errorNametypeclash, \
      "You have chosen a name for your field that conflicts with an existing field. Either choose a new name " \
      "or change the type of your field to match the existing field.") \
    M(130, errorNamenonroman, \
      "Your field name must contain only Roman characters. Kanji and kana are allowed in the field's user name.") \
    M(131, tabCombobox, "Options") \
    M(132, tabListbox, "Options") \
    M(133, tabButton, "Options") \
    M(134, tabRadio, "Options") \
    M(135, tabCheckbox, "Options") \
    M(136, tabOther, "Options") \
    M(137, tabActions, "Actions") \
    M(138, tabFormat, "Format") \
    M(139, tabValidate, "Validate") \
    M(140, tabChange, "Selection Change") \
    M(141, tabGeneral, "Appearance") \
    M(142, widthThin, "Thin") \
    M(143, widthMedium, "Medium") \
    M(144, widthThick, "Thick") \
    M(145, styleSolid, "Solid") \
    M(146, styleDashed, "Dashed") \
    M(147, styleBeveled, "Beveled") \
    M(148, styleInset, "Inset") \
    M(149, styleUnderlined, "Underlined") \
    M(150, fontTimesRoman, "Times Roman") \
    M(151, fontTimesBold, "Times Bold") \
    M(152, fontTimesItalic, "Times Italic") \
    M(153, fontTimesBoldItalic, "Times Bold Italic") \
    M(154, fontHelv, "Helvetica") \
    M(155, fontHelvBold, "Helvetica Bold") \
    M(156, fontHelvOblique, "Helvetica Oblique") \
    M(157, fontHelvBoldOblique, "Helvetica Bold Oblique") \
    M(158, fontCourier, "Courier") \
    M(159, fontCourierBold, "Courier Bold") \
    M(160, fontCourierOblique, "Courier Oblique") \
    M(161, fontCourierBoldOblique, "Courier Bold Oblique") \
    M(162, fontSymbol, "Symbol") \
    M(163, fontZapfDingbats, "Zapf Dingbats") \
    M(164, fontKanjiGothic, "Heisei Kaku Gothic") \
    M(165, fontKanjiMincho, "Heisei Mincho") \
    M(166, errorFontSize, "Font size must be between 4 and 144 points.") \
    M(167, warningFontConflict, \
      "The font you've chosen conflicts with other fields that share the same name. Do you wish to continue?") \
    M(168, displayVisible, "Visible") \
    M(169, displayHidden, "Hidden") \
    M(170, displayNoprint, "Visible but doesn't print") \
    M(171, displayNoview, "Hidden but printable") \
    M(172, tabCalculate, "Calculate") \
    M(173, calculateSum, "sum (+)") \
    M(174, calculateAvg, "average") \
    M(175, calculateProduct, "product (x)") \
    M(176, calculateMinimum, "minimum") \
    M(177, calculateMaximum, "maximum") \
    M(178, tabSignature, "Signed") \
    M(179, sigLockfieldsAll, "All fields") \
    M(180, sigLockfieldsThese, "Just these fields") \
    M(181, sigLockfieldsExcept, "All fields except these") \
    M(182, errorSigNoField, "Please enter one or more field names to lock.") \
    M(183, statusLockFields, "Select a field in the document to lock.") \
    M(184, tabText, "Options") \
    M(185, alignLeft, "Left") \
    M(186, alignRight, "Right") \
    M(187, alignCenter, "Center") \
    M(188, iconOverText, "Icon top, text bottom") \
    M(189, textOverIcon, "Text top, icon bottom") \
    M(190, iconThenText, "Icon left, text right") \
    M(191, textThenIcon, "Text left, icon right") \
    M(192, iconOnly, "Icon only") \
    M(193, textOnly, "Text only") \
    M(194, textOnIcon, "Text over icon") \
    M(195, faceNormal, "Up") \
    M(196, faceDown, "Down") \
    M(197, faceRollover, "Rollover") \
    M(198, highlightPush, "Push") \
    M(199, highlightToggle, "Toggle") \
    M(200, highlightInvert, "Invert") \
    M(201, highlightOutline, "Outline") \
    M(202, highlightNone, "None") \
    M(203, chkboxCheck, "Check") \
    M(204, chkboxCross, "Cross") \
    M(205, chkboxDiamond, "Diamond") \
    M(206, chkboxCircle, "Circle") \
    M(207, chkboxStar, "Star") \
    M(208, chkboxSquare, "Square") \
    M(209, sizeAuto, "Auto") \
    M(210, errorBadexport, "The export value \"%s\" is a reserved keyword, please choose another export value.") \
    M(211, errorInvalidField, "The %s field does not exist, please re-enter.") \
    M(212, errorNoField, "Please enter one or more field names for this calculation.") \
    M(213, fieldActionsTitle, "Field Actions") \
    M(214, pageActionsTitle, "Page Actions") \
    M(215, submInstr, "Submit all form fields to a URL") \
    M(216, submString1, "Enter a URL for this link:") \
    M(217, submString2, "Select URL...") \
    M(218, resetInstr, "Reset all form fields to their initial values.") \
    M(219, resetString1, "Select Fields...") \
    M(220, importInstr, "Import form data from a file.") \
    M(221, importString1, "Select File...") \
    M(222, actionAdd, "Add an Action") \
    M(223, actionEdit, "Edit an Action") \
    M(224, actionShowhideInstructions, "Show or hide a field.") \
    M(225, actionShowhideString1, "%s the \"%s\" field.") \
    M(226, actionShowhideString2, "No field selected.") \
    M(227, show, "Show") \
    M(228, hide, "Hide") \
    M(229, actionSetstate, "Set State") \
    M(230, notEditable, "This action cannot be edited.") \
    M(231, actionJavascriptInstructions, "Run a JavaScript.") \
    M(232, actionJavascriptString1, "A script is attached to this action.") \
    M(233, actionJavascriptString2, "No script is attached to this action.") \
    M(234, duplicateTitle, "Duplicate Field") \
    M(235, duplicateQuestion, "Duplicate the field on which pages?") \
    M(236, titleJavascript, "JavaScript") \
    M(237, statusJavascript, "Enter a name for the script.") \
    M(238, jsactionTitle, "JavaScript Edit") \
    M(239, lineStr, "Ln %d, ") \
    M(240, columnStr, "Col %d") \
    M(241, calcorderStr, \
      "The list below specifies the order in which calculations will be performed on individual fields. You " \
      "may move items in the list to change this calculation order.") \
    M(242, calcorderTitle, "Calculated Fields") \
    M(243, titleTemplates, "Page Templates") \
    M(244, warnDeleteField, "Are you sure you want to delete this field from the document?") \
    M(245, warnDeleteFields, "Are you sure you want to delete these fields from the document?") \
    M(246, questionDeleteSame, \
      "This field exists at more than one location or page in the document. Do you wish to delete all fields " \
      "with the same name?") \
    M(247, questionDeleteSames, \
      "Some of these fields exist at more than one location or page in the document. Do you wish to delete all " \
      "fields with the same name?") \
    M(248, questionTemplateAdd, "Create a new template using the current page?") \
    M(249, questionTemplateRename, "Change the template name for the current page?") \
    M(250, questionTemplateChange, "Change this template to look like the current page?") \
    M(251, questionTemplateOverride, "Change this template to look like the current page?") \
    M(252, questionTemplateDelete, \
      "Are you sure you want to delete this template and its associated page permanently from the document?") \
    M(253, statusTemplate, "Enter a name for the template.") \
    M(254, errorNonromanName, "Your name must contain only Roman characters.") \
    M(255, thousandsSeparator, ",") \
    M(256, errorInvalidRange, "Please enter a valid range.") \
    M(257, formatGeneralName, "None") \
    M(258, formatGeneralDesc, "No modification to the field value.") \
    M(259, formatCustomName, "Custom") \
    M(260, formatCustomDesc, \
      "The custom format allows you to define custom JavaScripts for formatting and keystroke validation.") \
    M(261, scriptCustom, "Custom script") \
    M(262, scriptNone, "No script") \
    M(263, formatNumberName, "Number") \
    M(264, formatNumberDesc, "The number format is used for the display of numbers, including currency.") \
    M(265, formatPercentName, "Percentage") \
    M(266, formatPercentDesc, \
      "The percentage format multiplies the field value by 100 and displays it with a percent sign.") \
    M(267, formatDateName, "Date") \
    M(268, formatDateDesc, "The date format is used for the display of dates.") \
    M(269, formatTimeName, "Time") \
    M(270, formatTimeDesc, "The time format is used for the display of times.") \
    M(271, formatSpecialName, "Special") \
    M(272, formatSpecialDesc, "The special format is used for zip codes, phone numbers and social security numbers.") \
    M(273, pnfcsMenuNone, "None") \
    M(274, pnfcsMenuGeneral, "General Currency") \
    M(275, pnfcsSymbolGeneral, "¤") \
    M(276, pnfcsMenuDollar, "Dollar") \
    M(277, pnfcsSymbolDollar, "$") \
    M(278, pnfcsMenuDeutschmark, "Deutschmark") \
    M(279, pnfcsSymbolDeutschmark, " DM") \
    M(280, pnfcsMenuEuro, "Euro") \
    M(281, pnfcsMenuFlorin, "Florin") \
    M(282, pnfcsSymbolFlorin, "fl") \
    M(283, pnfcsMenuFranc, "Franc") \
    M(284, pnfcsSymbolFranc, " F") \
    M(285, pnfcsMenuKrona, "Krona") \
    M(286, pnfcsSymbolKrona, " Kr") \
    M(287, pnfcsMenuLira, "Lira") \
    M(288, pnfcsSymbolLira, "L.") \
    M(289, pnfcsMenuPeseta, "Peseta") \
    M(290, pnfcsSymbolPeseta, " Pts") \
    M(291, pnfcsMenuPound, "Pound") \
    M(292, pnfcsSymbolPound, "£") \
    M(293, pnfcsMenuYen, "Yen") \
    M(294, pnfcsSymbolYen, "¥") \
    M(295, pnfssMenuCommaperiod, "1,234.56") \
    M(296, pnfssMenuPeriod, "1234.56") \
    M(297, pnfssMenuPeriodcomma, "1.234,56") \
    M(298, pnfssMenuComma, "1234,56") \
    M(299, pdfMD, "1/3") \
    M(300, pdfMDYy, "1/3/81") \
    M(301, pdfMDYyyy, "1/3/1981") \
    M(302, pdfMmDdYy, "01/03/81") \
    M(303, pdfMmDdYyyy, "01/03/1981") \
    M(304, pdfMmYy, "01/81") \
    M(305, pdfMmYyyy, "01/1981") \
    M(306, pdfDMmm, "3-Jan") \
    M(307, pdfDMmmYy, "3-Jan-81") \
    M(308, pdfDMmmYyyy, "3-Jan-1981") \
    M(309, pdfDdMmmYy, "03-Jan-81") \
    M(310, pdfDdMmmYyyy, "03-Jan-1981") \
    M(311, pdfYyMmDd, "81-01-03") \
    M(312, pdfYyyyMmDd, "1981-01-03") \
    M(313, pdfMmmYy, "Jan-81") \
    M(314, pdfMmmYyyy, "Jan-1981") \
    M(315, pdfMmmmYy, "January-81") \
    M(316, pdfMmmmYyyy, "January-1981") \
    M(317, pdfMmmDYyyy, "Jan 3, 1981") \
    M(318, pdfMmmmDYyyy, "January 3, 1981") \
    M(319, pdfMDYy12hr, "1/3/81 2:30 pm") \
    M(320, pdfMDYyyy12hr, "1/3/1981 2:30 pm") \
    M(321, pdfMDYy24hr, "1/3/81 14:30") \
    M(322, pdfMDYyyy24hr, "1/3/1981 14:30") \
    M(323, ptf24hrMm, "14:30") \
    M(324, ptf12hrMm, "2:30 pm") \
    M(325, ptf24hrMmSs, "14:30:15") \
    M(326, ptf12hrMmSs, "2:30:15 pm") \
    M(327, psfZip, "Zip Code") \
    M(328, psfZipPlus4, "Zip Code + 4") \
    M(329, psfPhone, "Phone Number") \
    M(330, psfSsn, "Social Security Number") \
    M(331, scalewhenAlways, "Always") \
    M(332, scalewhenNever, "Never") \
    M(333, scalewhenToobig, "Icon is Too Big") \
    M(334, scalewhenToosmall, "Icon is Too Small") \
    M(335, scalingProportional, "Proportional") \
    M(336, scalingAnamorphic, "Non-proportional") \
    M(337, errorGridSizeHeight, "Height must be between 1 and 10000.") \
    M(338, errorGridSizeWidth, "Width must be between 1 and 10000.") \
    M(339, errorGridOffsetVert, "Vertical offset must be between 0 and 10000.") \
    M(340, errorGridOffsetHoriz, "Horizontal offset must be between 0 and 10000.") \
    M(341, errorGridMinSpacing, "Minimum spacing must be between 1 and 50.") \
    M(342, menuGridSnapto, "S&nap To Forms Grid") \
    M(343, menuGridShow, "Show Forms &Grid") \
    M(344, titleSelectFields, "Field Selection") \
    M(345, statusSelectFields, "Select fields.") \
    M(346, menuHelpJavascript, "Forms &JavaScript Guide") \
    M(347, helpDocJavascript, "TessJS.pdf") \
    M(348, actionFileembed, "Embedded File") \
    M(349, menuFileInfo, "&Info...") \
    M(350, menuFileLaunch, "&Launch") \
    M(351, menuFileExtract, "&Extract...") \
    M(352, menuFileClipboard, "&Copy to Clipboard") \
    M(353, actionFileembedInstructions, "Embed a file in the document.") \
    M(354, actionFileembedString1, "A file is embedded in this action.") \
    M(355, actionFileembedString2, "No file is embedded in this action.") \
    M(356, titleFileembedOpen, "Embed File") \
    M(357, titleFileembedSave, "Extract File") \
    M(358, menuAbout, "Jackdaw &Forms...") \
    E(359) E(360) E(361) \
    M(362, menuWidgetTool, "&Form Tool") \
    M(363, menuFields, "&Fields") \
    M(364, menuTabOrder, "Set &Tab Order") \
    M(365, menuProperties, "P&roperties...") \
    M(366, menuPageActions, "Set Page &Action...") \
    M(367, actionShowhideButtonText, "Edit...") \
    M(368, actionJavascriptButtonText, "Edit...") \
    M(369, menuDuplicate, "&Duplicate...") \
    M(370, menuEdit, "&Edit") \
    M(371, menuEditCut, "Cu&t") \
    M(372, menuEditCopy, "&Copy") \
    M(373, menuEditPaste, "&Paste") \
    M(374, menuEditSelectall, "Select A&ll") \
    M(375, menuAlign, "&Align") \
    M(376, menuAlignLeft, "&Left") \
    M(377, menuAlignRight, "&Right") \
    M(378, menuAlignTop, "&Top") \
    M(379, menuAlignBottom, "&Bottom") \
    M(380, menuAlignVert, "&Vertically") \
    M(381, menuAlignHoriz, "&Horizontally") \
    M(382, menuCenter, "&Center") \
    M(383, menuCenterVert, "&Vertically") \
    M(384, menuCenterHoriz, "&Horizontally") \
    M(385, menuCenterBoth, "&Both") \
    M(386, menuDist, "D&istribute") \
    M(387, menuDistVert, "&Vertically") \
    M(388, menuDistHoriz, "&Horizontally") \
    M(389, menuSize, "&Size") \
    M(390, menuSizeVert, "&Height") \
    M(391, menuSizeHoriz, "&Width") \
    M(392, menuSizeBoth, "&Both") \
    M(393, menuCreateTemplate, "Page T&emplates...") \
    M(394, menuGrid, "Forms &Grid") \
    M(395, menuHelpForms, "&Forms Guide") \
    M(396, menuImport, "&Import") \
    M(397, menuExport, "&Export") \
    M(398, menuFdf, "&Form Data...") \
    M(399, importButton, "Select File...") \
    M(400, resetButton, "Select Fields...") \
    M(401, submButton, "Select URL...") \
    M(402, menuJavascript, "&JavaScript") \
    M(403, menuJsScripts, "&Document JavaScripts...") \
    M(404, menuJsConsole, "&Console...") \
    M(405, menuJsCalcorder, "&Set Field Calculation Order...") \
    M(406, menuJsAutocalc, "&Calculate Fields Automatically") \
    M(407, actionFileembedButtonText, "Select File...") \
    M(408, websearchUnknownWidget, "The plug-in required by this '%s' field is unavailable.") \
    M(409, menuEditDelete, "&Delete") \
    M(410, warnNameless, "an entry of the form's fields that has no name is passed over") \
    M(411, warnUnplaced, "the field finds no place among the others and stays where it is") \
    M(412, warnTwoTypes, "fields of different types have this name; each keeps its own value") \
    M(413, errorNoExchange, "This build of Forms cannot import or export form data") \
    M(414, errorNoScripts, "This build of Forms has no script engine") \
    M(415, errorNoDialogs, "This build of Forms has no dialogs") \
    M(416, warnLostCharacters, "the font lacks %s: bullets are shown instead")
// clang-format on
