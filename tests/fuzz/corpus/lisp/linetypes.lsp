(setq VORMIS "C:/VOR")
(VOR_LT_LO)
