(dcl_preview "VORMIS.DCL" "VOR_ELINE_0")
(dcl_preview "BLK.DCL" "FILE_CON")
(dcl_preview "VORMIS.DCL" "NO_SUCH_DIALOG")
