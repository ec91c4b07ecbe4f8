/* Ids of everything in vantrel.rc. Read by the resource compiler as well as by C++, hence only #define. */
#ifndef VANTREL_RESOURCE_H
#define VANTREL_RESOURCE_H

/* Fonts (type RT_FONT) */
#define IDF_DEFAULT_FONT 101

/* Pictures (type PNG) */
#define IDP_CUE_ARROW 101
#define IDP_CUE_EDGE 102

/* Menus */
#define IDM_FRAME 101
#define IDM_EDIT_POPUP 102
#define IDM_VIEW 103

/* Dialogs */
#define IDD_REORDER_AXES 103

/* Controls of dialogs */
#define IDC_AXES_LIST 1001
#define IDC_AXES_UP 1002
#define IDC_AXES_DOWN 1003

/* Accelerator tables: the main one serves every edit, the host's own is asked before it */
#define IDA_MAIN 101
#define IDA_APL2 102
#define IDA_APLX 103
#define IDA_DYALOG 104
#define IDA_MATLAB 105

/* Manifests (type RT_MANIFEST); 2 is the id that the system looks for in a library */
#define IDR_MANIFEST 2

/* Commands: the cell editor's pop-up menu */
#define ID_POPUP_UNDO 4001
#define ID_POPUP_REDO 4002
#define ID_POPUP_CUT 4003
#define ID_POPUP_COPY 4004
#define ID_POPUP_PASTE 4005
#define ID_POPUP_DELETE 4006
#define ID_POPUP_SELECT_ALL 4007
#define ID_POPUP_HELP 4008

/* Commands: file */
#define ID_FILE_REVERT 4101
#define ID_FILE_SAVE 4102
#define ID_FILE_SAVE_AS 4103
#define ID_FILE_SAVE_AND_CLOSE 4104
#define ID_FILE_EXIT 4105
#define ID_FILE_OPEN 4106
#define ID_FILE_PAGE_SETUP 4107
#define ID_FILE_PRINT 4108
#define ID_FILE_OPEN_OBJECT 4109
#define ID_FILE_EXIT_FORCE 4110

/* Commands: array clipboard, undo, find */
#define ID_EDIT_CUT_ARRAY 4201
#define ID_EDIT_COPY_ARRAY 4202
#define ID_EDIT_PASTE_ARRAY 4203
#define ID_EDIT_UNDO_ARRAY 4204
#define ID_EDIT_REDO_ARRAY 4205
#define ID_EDIT_FIND 4206
#define ID_EDIT_CHECK_AND_ALIGN 4207
#define ID_EDIT_EMPTY_UNDO_BUFFER 4208
#define ID_EDIT_FIND_NEXT 4209
#define ID_EDIT_FIND_PREVIOUS 4210

/* Commands: diagnosis, not in any menu */
#define ID_HELP_DEBUG 4504

/* Commands: window size */
#define ID_SIZE_TO_DEFINITION 4601

/* Commands: help; the last has no menu item, it exercises the crash report */
#define ID_HELP_GENERAL 4501
#define ID_HELP_KEYS 4502
#define ID_HELP_ABOUT 4503
#define ID_HELP_DEBUG 4504

/* Commands: sizes of boxes */
#define ID_SIZE_TO_DEFINITION 4601
#define ID_RESET_SIZE 4602
#define ID_RESET_ALL_SIZES 4603
#define ID_RESTORE 4604
#define ID_MINIMIZE 4605
#define ID_MAXIMIZE 4606

/* Commands: actions on the selected array */
#define ID_ACTION_CONVERT_TO_CHARACTER 4607
#define ID_ACTION_CONVERT_TO_NUMERIC 4608
#define ID_ACTION_RAVEL 4609
#define ID_ACTION_FIRST 4610
#define ID_ACTION_DISCLOSE 4611
#define ID_ACTION_ENCLOSE 4612
#define ID_ACTION_ENLIST 4613
#define ID_ACTION_REVERSE 4614
#define ID_ACTION_REVERSE_FIRST_AXIS 4615
#define ID_ACTION_TRANSPOSE 4616
#define ID_ACTION_SORT_ASCENDING 4617
#define ID_ACTION_SORT_DESCENDING 4618
#define ID_ACTION_MAKE_MATRIX 4619
#define ID_ACTION_MAKE_ARRAY_OF_ROWS 4621
#define ID_ACTION_REORDER_AXES 4628
#define ID_ACTION_EXECUTE 4629

/* Commands: planes of the selected array */
#define ID_PLANE_UP 4622
#define ID_PLANE_DOWN 4623
#define ID_PLANE_FIRST 4624
#define ID_PLANE_LAST 4625
#define ID_PLANE_PAGE_UP 4626
#define ID_PLANE_PAGE_DOWN 4627

/* Commands: insert */
#define ID_INSERT_ITEM_LEFT 4701
#define ID_INSERT_ITEM_RIGHT 4702
#define ID_INSERT_COLUMN_LEFT 4703
#define ID_INSERT_COLUMN_RIGHT 4704
#define ID_INSERT_ROW_ABOVE 4705
#define ID_INSERT_ROW_BELOW 4706

/* Commands: Escape in the frame */
#define ID_FRAME_ESCAPE 4801

/* Strings */
#define IDS_STRING_IS_NESTED 100
#define IDS_ARRAY_IS_SCALAR 101
#define IDS_ARRAY_IS_SIMPLE 102
#define IDS_ARRAY_IS_NOT_A_VECTOR 103
#define IDS_CANNOT_CONVERT_CLIPBOARD 104
#define IDS_DATA_SAVED 105
#define IDS_UNABLE_TO_FORMAT 106
#define IDS_NOT_SUPPORTED 107
#define IDS_ERROR_ALLOCATING 108
#define IDS_SYSTEM_ERROR 109
#define IDS_TOO_MANY_CHARACTERS 110
#define IDS_INVALID_CHARACTERS 111
#define IDS_INVALID_NUMBER_ON_ROW 112
#define IDS_NAME_IS_A_FUNCTION 113
#define IDS_NAME_IS_INVALID 114
#define IDS_NAME_IS_A_LABEL 115
#define IDS_NAME_IS_AN_OPERATOR 116
#define IDS_NAME_COUPLING_NOT_ZERO 117
#define IDS_ARRAY_IS_NOT_A_CHILD 118
#define IDS_NOT_FOUND 119
#define IDS_PARENT_IS_EMPTY 120
#define IDS_PARENT_IS_NOT_A_MATRIX 121
#define IDS_PARENT_IS_NOT_A_VECTOR 122
#define IDS_SAVE_CHANGES 123
#define IDS_REPLACE_VARIABLE 124
#define IDS_VANTREL 125
#define IDS_VARIABLE_EDITOR 126
#define IDS_CANNOT_DELETE_TOP_LEVEL 127
#define IDS_CONVERTING_ARRAY 128
#define IDS_FORMATTING_ARRAY 129
#define IDS_FORMATTING_PERCENT 130
#define IDS_CALCULATING_SIZES 131
#define IDS_CALCULATING_SIZES_PERCENT 132
#define IDS_UNSUPPORTED_TYPE 133
#define IDS_UNABLE_TO_CALCULATE_SIZES 134
#define IDS_CALCULATING_WIDTHS_PERCENT 135
#define IDS_INTERPRETER_IS_BUSY 136
#define IDS_EDITOR_IS_BUSY 137

#endif
