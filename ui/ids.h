// The id of every control and menu item of the main window and its dialogs, as ID_ and its name. Items
// that share a name form an array: base and index.
#pragma once

// Controls.
#define ID_lstHeads 1001
#define ID_txtShowWrap 1002
#define ID_txtType 1003
#define ID_txtKey 1004
#define ID_lblRemarks 1005 // 0 "Search:", 1 "Find:"
#define ID_lblDate 1007
#define ID_chkSort 1008
#define ID_ucStatusLeft 1009
#define ID_ucStatusRight 1010
#define ID_txtShowNoWrap 1011
#define ID_txtInline 1012
#define ID_lstInLineSrch 1013
#define ID_lstFontNames 1014
#define ID_lstFontSizes 1015
#define ID_fraSplitter 1016
#define ID_lblStaticBorder 1017
#define ID_shpEdge 1018
#define ID_lblAccessible 1020 // unseen labels that name the control behind them

// Menu "Home".
#define ID_mnu_View 2000
#define ID_mnu_Paste 2001
#define ID_mnu_srchfield 2002
#define ID_mnu_txtpastego1 2003
#define ID_mnu_import 2004
#define ID_mnu_ezdel 2005
#define ID_mnu_quit 2006
#define ID_mnu_export 2007
#define ID_mnu_Print 2008
#define ID_mnu_viewsrc 2009
#define ID_mnu_chkwrap 2010
#define ID_mnu_hidelst 2011
#define ID_mnu_ontop 2012
#define ID_mnu_desklink 2013
#define ID_mnu_options 2014

// Menu "Edit".
#define ID_mnu_edit 2050
#define ID_mnu_txtops 2051 // 0 to 5
#define ID_mnu_find 2060   // 0 to 2

// Menu "Data".
#define ID_mnu_dbfPopUp 2100
#define ID_mnu_remdups 2101
#define ID_mnu_dbcreate 2102
#define ID_mnu_toolsentry 2103
#define ID_mnu_delvisible 2104
#define ID_mnu_fixerrors 2105
#define ID_mnu_trimtitles 2106
#define ID_mnu_shrinkdata 2107
#define ID_mnu_sqlman 2110 // 0 to 5
#define ID_mnu_dbops 2120  // 0 to 2
#define ID_mnu_switchto 2125

// Tool items.
#define ID_mnu_top 2200 // 0 to 11
#define ID_mnu_fontfaces 2220
#define ID_mnu_fontsizes 2221
#define ID_mnu_help 2222

// Context menus.
#define ID_mnu_lstPopUp 2300
#define ID_mnu_lpu_delete 2301
#define ID_mnu_SortOnTitle 2302
#define ID_mnu_setsticky 2303
#define ID_mnu_nosticky 2304
#define ID_mnu_moverec 2305
#define ID_mnu_lstImport 2306
#define ID_mnu_lstExport 2307
#define ID_mnu_lstNotepad2 2308
#define ID_mnu_InstantSrch 2309
#define ID_mnu_soPopUp 2310
#define ID_mnu_srcPopUp 2311
#define ID_mnu_openfile 2312
#define ID_mnu_openfolder 2313
#define ID_mnu_ilsPopUp 2314
#define ID_mnu_ilsCopyCmds 2315 // 0 and 1
#define ID_mnu_txtpopup 2320
#define ID_mnu_txtundo 2321
#define ID_mnu_txtcut 2322
#define ID_mnu_txtcopy 2323
#define ID_mnu_txtpaste 2324
#define ID_mnu_txtpastego 2325
#define ID_mnu_txtdelete 2326
#define ID_mnu_txtselall 2327
#define ID_mnu_txtcopyall 2328
#define ID_mnu_txtjoinlines 2329
#define ID_mnu_txtcomplines 2330
#define ID_mnu_rePopUp 2331
#define ID_mnu_txtreset 2332

// Arrays that are filled while the program runs.
#define ID_mnu_AvailFields 2400 // an item for each column of the current table, at most 256
#define ID_mnu_sizes 2700       // 0 to 3, then an item for each font size
#define ID_mnu_fonts 2800       // an item for each font
#define ID_mnu_RegExChar 3100   // an item for each piece of a pattern
#define ID_mnu_avtables 4000    // an item for each table that records may move to
#define ID_mnu_availdb 6000     // an item for each snippet table of the data folder

// The dialog that asks for a name.
#define ID_frmInput_label 1101
#define ID_frmInput_text 1102
