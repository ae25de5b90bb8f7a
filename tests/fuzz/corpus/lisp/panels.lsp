(setq VORMIS "C:/VOR")
(VOR_ACF)
