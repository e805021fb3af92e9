// The id of every control and menu item of the main window, as ID_ and its name. Items that share a
// name form an array: base and index.
#pragma once

// Controls.
#define ID_lstHeads 1001
#define ID_txtShowWrap 1002
#define ID_txtType 1003
#define ID_txtKey 1004
#define ID_lblRemarks 1005 // 0 "Search:"
#define ID_lblDate 1007
#define ID_chkSort 1008
#define ID_ucStatusLeft 1009
#define ID_ucStatusRight 1010

// Menu "Home".
#define ID_mnu_Paste 2001
#define ID_mnu_srchfield 2002
#define ID_mnu_import 2004
#define ID_mnu_ezdel 2005
#define ID_mnu_quit 2006

// Menu "Data".
#define ID_mnu_remdups 2101
#define ID_mnu_sqlman 2110 // 0 to 5

// Tool items.
#define ID_mnu_top 2200 // 0 to 11

// Context menus.
#define ID_mnu_lpu_delete 2301
#define ID_mnu_SortOnTitle 2302
#define ID_mnu_AvailFields 2400 // an item for each column of the current table, at most 256

// Resources.
#define ID_appIcon 1
