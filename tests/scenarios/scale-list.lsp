; What the drawing's list of scales holds, for the scenarios of it.

(defun scale-list () (dictsearch (namedobjdict) "ACAD_SCALELIST"))

; ((key . name of the object) ...)
(defun scale-entries ( / key found)
  (foreach group (scale-list)
    (cond ((= (car group) 3) (setq key (cdr group)))
          ((and key (= (car group) 350)) (setq found (cons (cons key (cdr group)) found) key nil))))
  (reverse found))

(defun scale-field (entry code) (cdr (assoc code (entget (cdr entry)))))
(defun keys () (mapcar 'car (scale-entries)))
(defun names () (mapcar '(lambda (entry) (scale-field entry 300)) (scale-entries)))
(defun units-of (entry) (list (scale-field entry 140) (scale-field entry 141)))
(defun flags () (mapcar '(lambda (entry) (scale-field entry 290)) (scale-entries)))
; The first scale of that name.
(defun units (name / found)
  (foreach entry (scale-entries)
    (if (and (null found) (= (scale-field entry 300) name)) (setq found (units-of entry))))
  found)

; A viewport on the sheet that names the scale, which makes it one in use, or none.
(defun viewport (scale / made)
  (setvar "TILEMODE" 0)
  (command "_.MVIEW" "0,0" "100,50")
  (setq made (entlast))
  (if scale
    (progn (command "_.MSPACE") (setvar "CANNOSCALE" scale) (command "_.PSPACE"))
    (dictremove (cdr (assoc 360 (entget made))) "ASDK_XREC_ANNOTATION_SCALE_INFO"))
  made)

; The name of the scale that a viewport says it has.
(defun viewport-scale (name / extension record)
  (setq extension (cdr (assoc 360 (entget name))))
  (if extension (setq record (dictsearch extension "ASDK_XREC_ANNOTATION_SCALE_INFO")))
  (if record (cdr (assoc 300 (entget (cdr (assoc 340 record)))))))

(defun view-height (name) (cdr (assoc 45 (entget name))))
