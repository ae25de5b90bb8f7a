(setq a 1 b 2.5 c "text" d '(1 2 . 3))
(list a b c d nil T)
(strcat "\"q\" \\ \n \t \101" "¥\")
(+ 1 2.0 -3) (- 2147483647 -1) (* 1e308 10) (/ 1 0) (/ 7 2)
(atoi "42x") (getvar "TEXTSIZE") (setvar "CMDECHO" 0)
(command "LINE" '(0 0) '(10 0) "")
(W1 "d" "p") (ACAD_COLORDLG 3 nil) ; comment
!a
'quoted
LINE
(VOR_NOTHING)
