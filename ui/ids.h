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
#define ID_mnu_txtops 2051 // 0 to 6, the last being the line before "Find Inline"
#define ID_mnu_txtops_SelectAll (ID_mnu_txtops + 0)
#define ID_mnu_txtops_Clear (ID_mnu_txtops + 1)
#define ID_mnu_txtops_Line (ID_mnu_txtops + 2)
#define ID_mnu_txtops_Date (ID_mnu_txtops + 3)
#define ID_mnu_txtops_Case (ID_mnu_txtops + 4)
#define ID_mnu_txtops_Trim (ID_mnu_txtops + 5)
#define ID_mnu_find 2060 // 0 to 2
#define ID_mnu_find_Inline (ID_mnu_find + 0)
#define ID_mnu_find_Previous (ID_mnu_find + 1)
#define ID_mnu_find_Next (ID_mnu_find + 2)

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
#define ID_mnu_sqlman_Insert (ID_mnu_sqlman + 0)
#define ID_mnu_sqlman_Duplicate (ID_mnu_sqlman + 1)
#define ID_mnu_sqlman_Delete (ID_mnu_sqlman + 2)
#define ID_mnu_sqlman_Save (ID_mnu_sqlman + 3)
#define ID_mnu_sqlman_Line (ID_mnu_sqlman + 4)
#define ID_mnu_sqlman_Refresh (ID_mnu_sqlman + 5)
#define ID_mnu_dbops 2120 // 0 to 2
#define ID_mnu_dbops_Create (ID_mnu_dbops + 0)
#define ID_mnu_dbops_Rename (ID_mnu_dbops + 1)
#define ID_mnu_dbops_Drop (ID_mnu_dbops + 2)
#define ID_mnu_switchto 2125

// Tool items.
#define ID_mnu_top 2200 // 0 to 11
#define ID_mnu_top_PasteNew (ID_mnu_top + 0)
#define ID_mnu_top_Duplicate (ID_mnu_top + 1)
#define ID_mnu_top_Delete (ID_mnu_top + 2)
#define ID_mnu_top_Save (ID_mnu_top + 3)
#define ID_mnu_top_Unseen (ID_mnu_top + 4)
#define ID_mnu_top_FindPrevious (ID_mnu_top + 5)
#define ID_mnu_top_FindNext (ID_mnu_top + 6)
#define ID_mnu_top_Reload (ID_mnu_top + 7)
#define ID_mnu_top_Wrap (ID_mnu_top + 8)
#define ID_mnu_top_List (ID_mnu_top + 9)
#define ID_mnu_top_Title (ID_mnu_top + 10)
#define ID_mnu_top_Source (ID_mnu_top + 11)
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
#define ID_mnu_ilsCopyCmds_One (ID_mnu_ilsCopyCmds + 0)
#define ID_mnu_ilsCopyCmds_All (ID_mnu_ilsCopyCmds + 1)
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
#define ID_mnu_sizes_Smaller (ID_mnu_sizes + 0)
#define ID_mnu_sizes_Reset (ID_mnu_sizes + 1)
#define ID_mnu_sizes_Larger (ID_mnu_sizes + 2)
#define ID_mnu_sizes_Line (ID_mnu_sizes + 3)
#define ID_mnu_sizes_First (ID_mnu_sizes + 4)
#define ID_mnu_fonts 2800     // an item for each font
#define ID_mnu_RegExChar 3100 // an item for each piece of a pattern
#define ID_mnu_avtables 4000  // an item for each table that records may move to
#define ID_mnu_availdb 6000   // an item for each snippet table of the data folder

// The dialog that asks for a name.
#define ID_frmInput_label 1101
#define ID_frmInput_text 1102
